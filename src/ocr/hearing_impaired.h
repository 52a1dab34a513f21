#pragma once

#include "ocr/cut_text.h"
#include "ocr/run_ocr.h"

namespace quillomar {

struct HearingOptions {
  HearingBrackets brackets;
  bool speakers = false;  // labels go too
  CutOptions cut;
};

// Takes text for the hearing-impaired out of the unit's bitmap; reads the text where it was not and
// after each change. A unit with nothing else becomes blank. Fails, with a message, when a changed
// bitmap does not fit; what was taken out before stays out.
Result EraseHearingImpaired(SubpictureUnit& unit, const HearingOptions& options,
                            const OcrTools& tools);

// Takes a range of the unit's current boxes, of any lines, out of its bitmap and reads it anew.
// Fails as CutText does.
Result EraseSelection(SubpictureUnit& unit, BoxRange range, const CutOptions& options,
                      const OcrTools& tools);

}  // namespace quillomar
