#include "ocr/ink.h"

#include <algorithm>
#include <numeric>

namespace quillomar {
namespace {

// Greys darker than this are ink.
constexpr std::uint8_t kInkBelow = 64;

std::vector<InkRun> RunsOfRow(const EnginePicture& picture, int row) {
  std::vector<InkRun> runs;
  const std::uint8_t* pixels =
      picture.grey.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.width);
  for (int x = 0; x < picture.width; ++x) {
    if (pixels[x] >= kInkBelow) continue;
    const int first = x;
    while (x + 1 < picture.width && pixels[x + 1] < kInkBelow) ++x;
    runs.push_back({row, first, x});
  }
  return runs;
}

// Sets of runs that belong together; the smallest index stands for its set.
class RunSets {
 public:
  std::size_t Add() {
    parents_.push_back(parents_.size());
    return parents_.size() - 1;
  }
  std::size_t Root(std::size_t index) {
    while (parents_[index] != index) index = parents_[index] = parents_[parents_[index]];
    return index;
  }
  void Join(std::size_t a, std::size_t b) {
    a = Root(a);
    b = Root(b);
    parents_[std::max(a, b)] = std::min(a, b);
  }

 private:
  std::vector<std::size_t> parents_;
};

// Joins the runs from `current` on to those of the row above, `above` to `current`.
void JoinRows(const std::vector<InkRun>& runs, std::size_t above, std::size_t current,
              RunSets& sets) {
  std::size_t upper = above;
  for (std::size_t lower = current; lower < runs.size(); ++lower) {
    while (upper < current && runs[upper].last + 1 < runs[lower].first) ++upper;
    for (std::size_t i = upper; i < current && runs[i].first <= runs[lower].last + 1; ++i) {
      sets.Join(i, lower);
    }
  }
}

}  // namespace

void PixelBox::Join(const PixelBox& other) {
  if (x1 < x0) {
    *this = other;
    return;
  }
  x0 = std::min(x0, other.x0);
  x1 = std::max(x1, other.x1);
  y0 = std::min(y0, other.y0);
  y1 = std::max(y1, other.y1);
}

void Component::Add(const InkRun& run) {
  box.Join({run.first, run.last, run.row, run.row});
  pixels += run.Length();
  runs.push_back(run);
}

std::vector<Component> FindComponents(const EnginePicture& picture) {
  if (picture.width <= 0 || picture.height <= 0) return {};
  const auto rows = static_cast<std::size_t>(picture.height);
  if (picture.grey.size() / static_cast<std::size_t>(picture.width) < rows) return {};
  std::vector<InkRun> runs;
  RunSets sets;
  std::size_t above = 0;
  for (int row = 0; row < picture.height; ++row) {
    const std::size_t current = runs.size();
    for (const InkRun& run : RunsOfRow(picture, row)) {
      runs.push_back(run);
      sets.Add();
    }
    JoinRows(runs, above, current, sets);
    above = current;
  }
  std::vector<Component> components;
  std::vector<std::size_t> places(runs.size());
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const std::size_t root = sets.Root(i);
    if (root == i) {
      places[i] = components.size();
      components.emplace_back();
    }
    components[places[root]].Add(runs[i]);
  }
  return components;
}

int OverlapX(const PixelBox& a, const PixelBox& b) {
  return std::max(std::min(a.x1, b.x1) - std::max(a.x0, b.x0) + 1, 0);
}

int OverlapY(const PixelBox& a, const PixelBox& b) {
  return std::max(std::min(a.y1, b.y1) - std::max(a.y0, b.y0) + 1, 0);
}

int ValueAtShare(std::vector<int> values, double share) {
  if (values.empty()) return 0;
  const auto place = static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), values.begin() + place, values.end());
  return values[static_cast<std::size_t>(place)];
}

}  // namespace quillomar
