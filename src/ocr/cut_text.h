#pragma once

#include <span>

#include "ocr/hearing_text.h"
#include "spu/run_length.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

struct CutOptions {
  bool recenter = true;     // a shortened line goes to the middle of the place it had
  bool alignBottom = true;  // what is left goes down to where the lowest line stood
  bool evenMoves = false;   // such moves are by an even number of lines
  CropMargins margins;      // of the background around what is left
};

// Takes the columns under boxes of one line out of the decoded bitmap, along the line's slant; what
// stands right of them moves up to what stands left. Neighbouring characters and lines stay whole.
// The line's boxes move with it, those cut become blanks.
void CutBoxRange(SubpictureUnit& unit, BoxRange range, bool recenter);

// Cuts ranges of different lines of the unit's current boxes, encodes the bitmap again and aligns
// it; the boxes are then stale. Fails, with a message and the unit as it was, when the bitmap
// cannot be decoded or does not fit.
Result CutText(SubpictureUnit& unit, std::span<const BoxRange> ranges, const CutOptions& options,
               const SpuContext& context);

// Leaves nothing but background; else as CutText.
Result CutAllText(SubpictureUnit& unit, const CutOptions& options, const SpuContext& context);

}  // namespace quillomar
