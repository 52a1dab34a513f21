#include "bitmap/ppm.h"

#include <algorithm>
#include <cmath>

#include "base/format.h"

namespace quillomar {
namespace {

constexpr int kLongestEdge = 8192;

// Source pixels of the rows: every one that rounding leads to before the bitmap's end.
std::vector<int> SourceRows(int height, double scale) {
  std::vector<int> rows;
  for (int row = 0; rows.size() <= kLongestEdge; ++row) {
    const double source = row * scale + 0.5;
    if (source >= height) break;
    rows.push_back(static_cast<int>(source));
  }
  return rows;
}

// The columns are as many as fit, so that rounding can lead past the bitmap's end.
std::vector<int> SourceColumns(int width, double scale) {
  std::vector<int> columns;
  const int count = static_cast<int>(std::min<double>(width / scale, kLongestEdge + 1));
  columns.reserve(static_cast<std::size_t>(count));
  for (int column = 0; column < count; ++column) {
    const double source = column * scale + 0.5;
    columns.push_back(std::min(static_cast<int>(source), width - 1));
  }
  return columns;
}

std::size_t RowStart(int row, int width) {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(width);
}

bool IsScale(double scale) {
  return std::isfinite(scale) && scale > 0;
}

bool IsPictureEdge(const std::vector<int>& edge) {
  return !edge.empty() && edge.size() <= kLongestEdge;
}

}  // namespace

std::optional<Bytes> MakePpm(ByteSpan pixels, int width, const TypeColours& colours,
                             PpmScale scale) {
  if (!IsScale(scale.x) || !IsScale(scale.y)) return std::nullopt;
  const int height = static_cast<int>(pixels.size()) / width;
  const std::vector<int> rows = SourceRows(height, scale.y);
  const std::vector<int> columns = SourceColumns(width, scale.x);
  if (!IsPictureEdge(rows) || !IsPictureEdge(columns)) return std::nullopt;

  const std::string header =
      Format("P6\n%d %d\n255\n", static_cast<int>(columns.size()), static_cast<int>(rows.size()));
  Bytes file(header.begin(), header.end());
  for (const int row : rows) {
    const ByteSpan source = pixels.subspan(RowStart(row, width));
    for (const int column : columns) {
      const Rgb colour = colours.at(source[static_cast<std::size_t>(column)]);
      file.insert(file.end(), {colour.r, colour.g, colour.b});
    }
  }
  return file;
}

}  // namespace quillomar
