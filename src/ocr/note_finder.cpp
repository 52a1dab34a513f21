#include "ocr/note_finder.h"

#include <algorithm>

#include "ocr/music_note.h"
#include "spu/char_box.h"

namespace quillomar {
namespace {

constexpr std::size_t kMostParts = 6;  // of a broken note
// The widest gap between them and the widest note, x-heights.
constexpr double kPartGap = 0.35, kWidestNote = 1.6;
// A wider gap than this parts a note from a word, x-heights.
constexpr double kNoteGap = 0.45;
constexpr int kSoftReach = 2;  // pixels that a note's soft edge may add at each side

// The ink and soft edges in a part of the picture.
Glyph WithSoftEdges(const Glyph& glyph, const EnginePicture& picture) {
  PixelBox box = glyph.UnshearedBox();
  box.x0 = std::max(box.x0 - kSoftReach, 0);
  box.y0 = std::max(box.y0 - kSoftReach, 0);
  box.x1 = std::min(box.x1 + kSoftReach, picture.width - 1);
  box.y1 = std::min(box.y1 + kSoftReach, picture.height - 1);
  EnginePicture part;
  part.width = box.Width();
  part.height = box.Height();
  for (int y = box.y0; y <= box.y1; ++y) {
    for (int x = box.x0; x <= box.x1; ++x) {
      const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                             static_cast<std::size_t>(x);
      const std::uint8_t grey = picture.grey[at];
      part.grey.push_back(grey <= kSoftEdge ? 0 : 255);
    }
  }
  Glyph whole;
  for (const Component& found : FindComponents(part)) {
    Component component;
    for (const InkRun& run : found.runs)
      component.Add({run.row + box.y0, run.first + box.x0, run.last + box.x0});
    whole.Join({component.box, {component}, component.pixels});
  }
  return whole;
}

class NoteFinder {
 public:
  NoteFinder(LineText& line, const EnginePicture* picture) : line_(line), picture_(picture) {}

  void Find() {
    for (std::size_t i = 0; i < line_.texts.size(); ++i) {
      for (std::size_t parts = 1; parts <= kMostParts; ++parts) {
        if (IsNote(i, parts)) TakeNote(i, parts);
      }
    }
  }

 private:
  [[nodiscard]] bool StandsAlone(std::size_t first, std::size_t end) const {
    return (first == 0 || StartsWord(first)) && (end == line_.texts.size() || StartsWord(end));
  }
  // Nobody has said so of what was not read, and who misreads a note may miss the blank beside it.
  [[nodiscard]] bool StartsWord(std::size_t glyph) const {
    const GlyphText& text = line_.texts[glyph];
    return text.startsWord ||
           line_.RelativeGapBefore(glyph) > (text.text.empty() ? kPartGap : kNoteGap);
  }
  [[nodiscard]] bool IsNote(std::size_t first, std::size_t parts) {
    const std::size_t end = first + parts;
    if (end > line_.texts.size() || !StandsAlone(first, end)) return false;
    for (std::size_t i = first; i < end; ++i) {
      if (line_.texts[i].fixed || (i > first && line_.RelativeGapBefore(i) > kPartGap))
        return false;
    }
    const Glyph glyph = JoinedGlyph(line_.line.glyphs, first, parts);
    if (glyph.box.Width() > kWidestNote * line_.line.metrics.xHeight) return false;
    if (first > 0 && end < line_.texts.size())
      return glyph.components.size() == 1 && LooksLikeMusicNote(glyph, line_.line);
    return LooksLikeMusicNote(glyph, line_.line) || IsSoftNote(glyph);
  }
  [[nodiscard]] bool IsSoftNote(const Glyph& glyph) {
    auto& known = line_.softNotes;
    if (std::find(known.begin(), known.end(), glyph.box) != known.end()) return true;
    if (picture_ == nullptr || !LooksLikeMusicNote(WithSoftEdges(glyph, *picture_), line_.line))
      return false;
    known.push_back(glyph.box);
    return true;
  }
  void TakeNote(std::size_t first, std::size_t parts) {
    line_.JoinGlyphs(first, parts);
    const auto begin = line_.texts.begin() + static_cast<std::ptrdiff_t>(first) + 1;
    line_.texts.erase(begin, begin + static_cast<std::ptrdiff_t>(parts - 1));
    line_.texts[first].text = kNoteSign;
    line_.texts[first].startsWord = true;
  }

  LineText& line_;
  const EnginePicture* picture_;
};

}  // namespace

void FindNotes(LineText& line, const EnginePicture* picture) {
  NoteFinder(line, picture).Find();
}

}  // namespace quillomar
