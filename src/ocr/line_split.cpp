#include "ocr/line_split.h"

#include <algorithm>
#include <optional>

#include "ocr/glyphs.h"

namespace quillomar {
namespace {

constexpr int kLetterHeight = 7;  // pixels; lower components are marks
// Bands of rows, in typical heights.
constexpr double kThinBand = 0.62;
constexpr double kBandGap = 0.55;
constexpr double kLowestPart = 0.9;
// A component that is taller may reach through two lines, if this share lies in each.
constexpr double kTallComponent = 2.1;
constexpr double kShareInLine = 0.25;
// Components between these heights are letters, lower ones may be marks; a mark stands so far above
// its letter at most.
constexpr double kLeastLetter = 0.6;
constexpr double kMarkGap = 0.4;
// The lower of two peaks of the profile between which a band may be cut, as a share of the other.
constexpr double kPeakShare = 0.3;

// A band at least `height` tall may be cut where the profile falls to `valley` of the lower peak.
struct CutRule {
  double height, valley;
};
constexpr CutRule kCutRules[] = {{3.2, 0.60}, {2.75, 0.30}, {1.9, 0.15}};

struct Band {
  int top = 0, bottom = 0;
  [[nodiscard]] int Height() const { return bottom - top + 1; }
};

class LineSplitter {
 public:
  explicit LineSplitter(std::vector<Component> components) : components_(std::move(components)) {
    std::vector<int> heights, allHeights;
    int bottom = 0;
    for (const Component& component : components_) {
      allHeights.push_back(component.box.Height());
      if (component.box.Height() >= kLetterHeight) heights.push_back(component.box.Height());
      bottom = std::max(bottom, component.box.y1);
    }
    typical_ =
        heights.empty() ? std::max(ValueAtShare(allHeights, 1), 1) : ValueAtShare(heights, 0.5);
    profile_.resize(static_cast<std::size_t>(bottom) + 1);
    for (const Component& component : components_) {
      for (const InkRun& run : component.runs)
        profile_[static_cast<std::size_t>(run.row)] += run.Length();
    }
  }

  std::vector<InkLine> Split() {
    FindBands();
    JoinThinBands();
    std::vector<Band> cut;
    for (const Band& band : bands_) CutBand(band, cut);
    bands_ = std::move(cut);
    return Distribute();
  }

 private:
  [[nodiscard]] double Heights(double count) const { return count * typical_; }

  void FindBands() {
    const int rows = static_cast<int>(profile_.size());
    for (int row = 0; row < rows; ++row) {
      if (profile_[static_cast<std::size_t>(row)] == 0) continue;
      const int top = row;
      while (row + 1 < rows && profile_[static_cast<std::size_t>(row) + 1] > 0) ++row;
      bands_.push_back({top, row});
    }
  }

  // Accents and dots that stand above all else of their line, lines of commas and dots.
  void JoinThinBands() {
    for (std::size_t i = 0; i < bands_.size();) {
      const std::optional<std::size_t> partner = PartnerOf(i);
      if (!partner) {
        ++i;
        continue;
      }
      const std::size_t first = std::min(i, *partner);
      bands_[first].bottom = bands_[first + 1].bottom;
      bands_.erase(bands_.begin() + static_cast<std::ptrdiff_t>(first) + 1);
      i = 0;
    }
  }
  [[nodiscard]] std::optional<std::size_t> PartnerOf(std::size_t index) const {
    if (bands_[index].Height() >= Heights(kThinBand)) return {};
    std::optional<std::size_t> partner;
    int best = static_cast<int>(Heights(kBandGap));
    // An accent belongs to what is below it, so that wins a tie.
    if (index + 1 < bands_.size() && bands_[index + 1].top - bands_[index].bottom <= best) {
      best = bands_[index + 1].top - bands_[index].bottom - 1;
      partner = index + 1;
    }
    if (index > 0 && bands_[index].top - bands_[index - 1].bottom <= best) partner = index - 1;
    return partner;
  }

  void CutBand(const Band& band, std::vector<Band>& out) const {
    const std::optional<int> row = CutRow(band);
    if (!row) {
      out.push_back(band);
      return;
    }
    CutBand({band.top, *row}, out);
    CutBand({*row + 1, band.bottom}, out);
  }

  // The last row of the upper part; nothing when the band is one line.
  [[nodiscard]] std::optional<int> CutRow(const Band& band) const {
    // Specks are no higher than a row.
    const int least = std::max(static_cast<int>(Heights(kLowestPart)), 1);
    std::optional<int> best;
    double bestScore = 1;
    for (int row = band.top + least; row + least <= band.bottom; ++row) {
      const double score = ValleyScore(band, row);
      if (score < bestScore) {
        bestScore = score;
        best = row;
      }
    }
    for (const CutRule& rule : kCutRules) {
      if (band.Height() < Heights(rule.height)) continue;
      return bestScore <= rule.valley ? best : RowBetweenLetters(band, least);
    }
    return {};
  }
  [[nodiscard]] bool IsLetter(const Component& component) const {
    const int height = component.box.Height();
    return height >= Heights(kLeastLetter) && height <= Heights(kTallComponent);
  }
  // A short line beside a long one makes no peak, and marks fill the valley between them: the last
  // row that no letter reaches through.
  [[nodiscard]] std::optional<int> RowBetweenLetters(const Band& band, int least) const {
    for (int row = band.bottom - least; row >= band.top + least; --row) {
      bool above = false, below = false, through = false;
      for (const Component& component : components_) {
        if (!IsLetter(component) || component.box.y0 < band.top || component.box.y1 > band.bottom)
          continue;
        const bool isAbove = component.box.y1 <= row, isBelow = component.box.y0 > row;
        above = above || isAbove;
        below = below || isBelow;
        through = through || !(isAbove || isBelow);
      }
      if (above && below && !through) return row;
    }
    return {};
  }
  [[nodiscard]] double ValleyScore(const Band& band, int row) const {
    const auto at = [this](int place) { return profile_.begin() + place; };
    const int above = *std::max_element(at(band.top), at(row));
    const int below = *std::max_element(at(row + 1), at(band.bottom + 1));
    const int low = std::min(above, below);
    if (low < kPeakShare * std::max(above, below)) return 1;
    return static_cast<double>(*at(row)) / low;
  }

  std::vector<InkLine> Distribute() {
    std::vector<InkLine> lines(bands_.size());
    for (Component& component : components_) {
      std::vector<int> pixels = PixelsInBands(component);
      const auto most = std::max_element(pixels.begin(), pixels.end()) - pixels.begin();
      if (component.box.Height() > Heights(kTallComponent) &&
          ReachesThroughTwo(component, pixels)) {
        CutComponent(component, lines);
      } else {
        lines[static_cast<std::size_t>(most)].components.push_back(std::move(component));
      }
    }
    std::erase_if(lines, [](const InkLine& line) { return line.components.empty(); });
    for (InkLine& line : lines) Measure(line);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) MoveMarksDown(lines[i], lines[i + 1]);
    return lines;
  }
  void Measure(InkLine& line) const {
    line.typicalHeight = typical_;
    line.box = {};
    for (const Component& component : line.components) line.box.Join(component.box);
  }
  // What stands below the baseline of one line and above a letter of the next is that letter's.
  void MoveMarksDown(InkLine& upper, InkLine& lower) const {
    const int baseline = FindBaseline(upper);
    const auto isMarkBelow = [&](const Component& mark) {
      return mark.box.y0 > baseline && mark.box.Height() < Heights(kLeastLetter) &&
             std::any_of(lower.components.begin(), lower.components.end(),
                         [&](const Component& letter) {
                           return IsLetter(letter) && OverlapX(mark.box, letter.box) > 0 &&
                                  mark.box.y1 < letter.box.y1 &&
                                  letter.box.y0 - mark.box.y1 <= Heights(kMarkGap);
                         });
    };
    const auto marks = std::stable_partition(upper.components.begin(), upper.components.end(),
                                             [&](const Component& c) { return !isMarkBelow(c); });
    if (marks == upper.components.begin() || marks == upper.components.end()) return;
    std::move(marks, upper.components.end(), std::back_inserter(lower.components));
    upper.components.erase(marks, upper.components.end());
    Measure(upper);
    Measure(lower);
  }
  [[nodiscard]] std::size_t BandOf(int row) const {
    std::size_t index = 0;
    while (index + 1 < bands_.size() && row > bands_[index].bottom) ++index;
    return index;
  }
  [[nodiscard]] std::vector<int> PixelsInBands(const Component& component) const {
    std::vector<int> pixels(bands_.size());
    for (const InkRun& run : component.runs) pixels[BandOf(run.row)] += run.Length();
    return pixels;
  }
  static bool ReachesThroughTwo(const Component& component, const std::vector<int>& pixels) {
    return std::count_if(pixels.begin(), pixels.end(), [&component](int count) {
             return count > kShareInLine * component.pixels;
           }) > 1;
  }
  void CutComponent(const Component& component, std::vector<InkLine>& lines) const {
    std::vector<Component> parts(bands_.size());
    for (const InkRun& run : component.runs) parts[BandOf(run.row)].Add(run);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (parts[i].pixels > 0) lines[i].components.push_back(std::move(parts[i]));
    }
  }

  std::vector<Component> components_;
  int typical_ = 1;
  std::vector<int> profile_;  // ink of each row
  std::vector<Band> bands_;
};

}  // namespace

std::vector<InkLine> SplitLines(std::vector<Component> components) {
  if (components.empty()) return {};
  return LineSplitter(std::move(components)).Split();
}

}  // namespace quillomar
