#pragma once

#include <optional>
#include <string>

#include "ocr/engine.h"
#include "ocr/hearing_text.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// What the engine is to learn when the user says what a range of a unit's current boxes stands for;
// `picture` is the one that they were read from. Nothing when the range is not of one word or the
// text is empty or has blanks.
[[nodiscard]] std::optional<Lesson> MakeLesson(const SubpictureUnit& unit, BoxRange range,
                                               EnginePicture picture, const std::string& text);

// The boxes of a line whose middle lies between two columns; nothing when there are none.
[[nodiscard]] std::optional<BoxRange> FindBoxes(const SubpictureUnit& unit, int line, int x0,
                                                int x1);

// Makes a range of boxes of one line, and the line of text, say what the user says; the characters
// share the range's columns when they are not one for each box. They are then beyond doubt.
void CorrectBoxes(SubpictureUnit& unit, BoxRange range, const std::string& text);

}  // namespace quillomar
