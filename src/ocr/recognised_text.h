#pragma once

#include <span>
#include <string>

#include "ocr/engine.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

inline constexpr std::size_t kMaxTextLines = 32;
inline constexpr std::size_t kMaxLineLength = 127;  // characters

// Puts what the engine read into the unit: boxes in rows of the bitmap, with their lines; unknown
// characters as '_'; gaps between words narrowed, so that cutting out a word leaves its neighbours
// alone. Of the text at most 32 lines, up to the first empty one, are kept.
void TakeRecognisedText(SubpictureUnit& unit, const EngineResult& result);

// Keeps the text as the one first read, unless there is one.
void KeepFirstText(SubpictureUnit& unit);

// A line of text with each ".'" that stands where the boxes hold a music note as "# ". Stops at one
// that a third apostrophe follows.
[[nodiscard]] std::string SpellMusicNotes(const std::string& text,
                                          std::span<const CharBox> lineBoxes);

}  // namespace quillomar
