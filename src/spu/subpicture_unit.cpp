#include "spu/subpicture_unit.h"

namespace quillomar {
namespace {

constexpr int kEmptyBoxEdge = 11;
constexpr std::uint8_t kFirstSubStreamId = 0x20;

std::int16_t Edge(int value) {
  return static_cast<std::int16_t>(value);
}

}  // namespace

void ContentBox::Add(int row, int first, int last) {
  const bool unset = top < 0;
  left = Edge(unset ? first : std::min<int>(left, first));
  top = Edge(unset ? row : std::min<int>(top, row));
  right = Edge(std::max<int>(right, last));
  bottom = Edge(std::max<int>(bottom, row));
}

ContentBox ContentBox::OfEmptyBitmap(int width, int rows) {
  return {0, 0, Edge(std::min(width, kEmptyBoxEdge) - 1), Edge(std::min(rows, kEmptyBoxEdge) - 1)};
}

std::uint8_t SubpictureUnit::SubStreamId() const {
  return static_cast<std::uint8_t>(kFirstSubStreamId + stream);
}

}  // namespace quillomar
