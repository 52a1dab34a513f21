#pragma once

#include <vector>

#include "base/job_control.h"
#include "ocr/lesson.h"
#include "ocr/run_ocr.h"

namespace quillomar {

// Corrects a range of a unit's current boxes. When the glyph under it stands elsewhere in the units
// read so far (`all`, in the order of the list), asks whether all are to be read so. Unless the
// answer is no, the glyph is kept for this disc and all others, and what holds it is read anew.
void TeachGlyph(SubpictureUnit& unit, BoxRange range, const Lesson& lesson,
                const std::vector<SubpictureUnit*>& all, const OcrTools& tools,
                JobControl& control);

}  // namespace quillomar
