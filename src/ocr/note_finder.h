#pragma once

#include "ocr/line_text.h"

namespace quillomar {

inline constexpr char32_t kNoteSign = U'\u266A';  // until the result is written

// Makes notes of glyphs that stand alone and look like one. At the ends of a line the parts of a
// broken note are joined and, with the picture that the line was read from, soft edges count; what
// these show is kept in the line.
void FindNotes(LineText& line, const EnginePicture* picture = nullptr);

}  // namespace quillomar
