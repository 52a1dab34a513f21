#include "ocr/text_roles.h"

#include <algorithm>

namespace quillomar {
namespace {

struct Run {
  int type;
  std::size_t end;  // index of the pixel behind it
};

Run RunAt(ByteSpan pixels, std::size_t at) {
  std::size_t end = at + 1;
  while (end < pixels.size() && pixels[end] == pixels[at]) ++end;
  return {pixels[at], end};
}

int LowestTypeBut(std::initializer_list<int> others) {
  for (int type = 0; type < kPixelTypes; ++type) {
    if (std::find(others.begin(), others.end(), type) == others.end()) return type;
  }
  return kUnknownType;
}

// How often runs of each type lie between two runs of another, as a stroke between its soft edges
// does.
std::array<std::uint32_t, kPixelTypes> CountEnclosures(ByteSpan pixels, int background,
                                                       int outline) {
  std::array<std::uint32_t, kPixelTypes> counts{};
  const auto isInside = [&](int type) { return type != background && type != outline; };
  std::size_t at = 0;
  while (at < pixels.size()) {
    const Run first = RunAt(pixels, at);
    at = first.end;
    if (!isInside(first.type) || at >= pixels.size()) continue;
    const Run second = RunAt(pixels, at);
    if (!isInside(second.type)) continue;
    at = second.end;
    if (at >= pixels.size() || pixels[at] != first.type) continue;
    at = RunAt(pixels, at).end;
    if (at < pixels.size() && pixels[at] != second.type) {
      ++counts[static_cast<std::size_t>(second.type)];
    }
  }
  return counts;
}

int MostEnclosed(const SubpictureUnit& unit, ByteSpan content, int background, int outline) {
  const auto enclosures = CountEnclosures(content, background, outline);
  std::uint64_t best = 0;
  int type = kUnknownType;
  for (std::size_t i = 0; i < enclosures.size(); ++i) {
    const std::uint64_t pixels = unit.state.statistics.pixelCounts[i];
    const std::uint64_t score = enclosures[i] * pixels / 4;
    if (score > best) {
      best = score;
      type = static_cast<int>(i);
    }
  }
  return type;
}

TextRoles DefaultRoles(int background) {
  TextRoles roles;
  roles.textType = background == 0 ? 1 : 0;
  roles.outlineType = roles.textType + 1 == background ? roles.textType + 2 : roles.textType + 1;
  roles.otherType =
      roles.outlineType + 1 == background ? roles.outlineType + 2 : roles.outlineType + 1;
  return roles;
}

}  // namespace

void FindTextRoles(SubpictureUnit& unit) {
  const BitmapStatistics& statistics = unit.state.statistics;
  const int background = statistics.backgroundType;
  TextRoles& roles = unit.textRoles;
  if (unit.HasButtons()) {
    roles = DefaultRoles(background);
    return;
  }
  const auto width = static_cast<std::size_t>(unit.state.width);
  const auto rows = static_cast<std::size_t>(statistics.box.bottom - statistics.box.top);
  const auto start = static_cast<std::size_t>(statistics.box.top + 1) * width;
  if (start + rows * width > unit.pixels.size() || rows == 0) return;
  const ByteSpan content = ByteSpan(unit.pixels).subspan(start, rows * width);
  const ByteSpan firstRow = content.first(width);
  const auto seen = std::find_if(firstRow.begin(), firstRow.end(),
                                 [&](std::uint8_t type) { return type != background; });
  if (seen == firstRow.end()) return;
  const int outline = *seen;
  std::vector<int> candidates;
  for (int type = 0; type < kPixelTypes; ++type) {
    const bool occurs = statistics.pixelCounts[static_cast<std::size_t>(type)] > 0;
    if (occurs && type != background && type != outline) candidates.push_back(type);
  }
  if (candidates.empty()) {
    roles.textType = outline;
    roles.outlineType = LowestTypeBut({background, outline});
  } else {
    roles.textType = candidates.size() == 1 ? candidates.front()
                                            : MostEnclosed(unit, content, background, outline);
    roles.outlineType = outline;
  }
  roles.otherType = LowestTypeBut({background, roles.textType, roles.outlineType});
}

}  // namespace quillomar
