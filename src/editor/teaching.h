#pragma once

#include "base/job_control.h"
#include "editor/edit_history.h"
#include "ocr/lesson.h"
#include "ocr/run_ocr.h"

namespace quillomar {

// Corrects a range of a unit's current boxes. When the glyph under it stands elsewhere in the units
// read so far (`all`, in the order of the list), asks whether all are to be read so. Unless the
// answer is no, the glyph is kept for this disc and all others, and what holds it is read anew.
// Texts that change belong to the history's open step.
void TeachGlyph(const UnitPointer& corrected, BoxRange range, const Lesson& lesson,
                const UnitList& all, const OcrTools& tools, EditHistory& history,
                JobControl& control);

}  // namespace quillomar
