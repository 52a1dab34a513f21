#include "ocr/slant.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quillomar {
namespace {

// Letters that are measured, and the runs of their strokes, in typical heights: serifs and bars
// would make upright type look slanted.
constexpr double kTallLetter = 0.8;
constexpr double kStroke = 0.45;
// A line teaches, or is slanted on its own, when its best value is that far above the upright one.
constexpr double kClearGain = 1.10;
constexpr int kClearLetters = 6;
constexpr double kLeastSlant = 0.06;
// A line whose value at the disc's slant is below this share of its best one has its own.
constexpr double kOwnShare = 0.9;

class Projection {
 public:
  Projection(const PixelBox& box, double slant) : middle_((box.y0 + box.y1) / 2), slant_(slant) {
    const int reach = static_cast<int>(std::ceil(std::abs(slant) * box.Height())) + 2;
    left_ = box.x0 - reach;
    sums_.resize(static_cast<std::size_t>(box.Width() + 2 * reach + 2));
  }
  void Add(const InkRun& run) {
    const double start = run.first + (run.row - middle_) * slant_ - left_;
    const auto column = static_cast<std::size_t>(start);
    const double share = start - std::floor(start);
    // The two ends of the run fall between columns.
    sums_[column] += 1 - share;
    const auto length = static_cast<std::size_t>(run.Length());
    for (std::size_t i = 1; i < length; ++i) sums_[column + i] += 1;
    sums_[column + length] += share;
  }
  [[nodiscard]] double SumOfSquares() const {
    double sum = 0;
    for (const double value : sums_) sum += value * value;
    return sum;
  }

 private:
  int middle_;
  double slant_;
  int left_ = 0;
  std::vector<double> sums_;
};

std::vector<InkRun> StrokesOf(const InkLine& line, int& letters) {
  std::vector<InkRun> strokes;
  for (const Component& component : line.components) {
    if (component.box.Height() < kTallLetter * line.typicalHeight) continue;
    ++letters;
    for (const InkRun& run : component.runs) {
      if (run.Length() <= kStroke * line.typicalHeight) strokes.push_back(run);
    }
  }
  return strokes;
}

std::size_t BestStep(const SlantCurve& curve) {
  const auto best = std::max_element(curve.values.begin(), curve.values.end());
  return static_cast<std::size_t>(best - curve.values.begin());
}

double SlantAt(double step) {
  return kLowestSlant + step * kSlantStep;
}

// The place of the peak between steps, by the parabola through its neighbours.
double PeakSlant(const SlantCurve& curve) {
  const std::size_t best = BestStep(curve);
  if (best == 0 || best + 1 == kSlantSteps) return SlantAt(static_cast<double>(best));
  const double before = curve.values[best - 1], at = curve.values[best],
               after = curve.values[best + 1];
  const double bend = before - 2 * at + after;
  const double shift = bend < 0 ? 0.5 * (before - after) / bend : 0;
  return SlantAt(static_cast<double>(best) + shift);
}

bool IsClear(const SlantCurve& curve) {
  const std::size_t best = BestStep(curve);
  return curve.letters >= kClearLetters && curve.values[best] > kClearGain &&
         SlantAt(static_cast<double>(best)) >= kLeastSlant;
}

}  // namespace

SlantCurve MeasureSlantCurve(const InkLine& line) {
  SlantCurve curve;
  const std::vector<InkRun> strokes = StrokesOf(line, curve.letters);
  for (std::size_t step = 0; step < kSlantSteps; ++step) {
    Projection projection(line.box, SlantAt(static_cast<double>(step)));
    for (const InkRun& run : strokes) projection.Add(run);
    curve.values[step] = projection.SumOfSquares();
  }
  const double upright = std::max(curve.values[kUprightStep], 1.0);
  for (double& value : curve.values) value /= upright;
  return curve;
}

void SlantModel::Learn(const SlantCurve& curve) {
  if (!IsClear(curve)) return;
  for (std::size_t i = 0; i < kSlantSteps; ++i) sum_.values[i] += curve.values[i];
  sum_.letters += curve.letters;
}

double SlantModel::SlantOf(const SlantCurve& curve) const {
  const double own = IsClear(curve) ? PeakSlant(curve) : 0;
  if (sum_.letters == 0) return own;
  const std::size_t step = BestStep(sum_);
  const double value = curve.values[step];
  if (own > 0 && value < kOwnShare * curve.values[BestStep(curve)]) return own;
  return value > curve.values[kUprightStep] ? PeakSlant(sum_) : 0;
}

}  // namespace quillomar
