#pragma once

#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

// Run-length codes of a subpicture field, most significant bits first; n pixels of type t:
//
//   1..3         4 bits   nn tt
//   4..15        8 bits   00 nnnn tt
//   16..63      12 bits   0000 nnnnnn tt
//   64..255, 0  16 bits   000000 nnnnnnnn tt     (0: to the end of the row)
//
// Every row begins on a byte boundary; the even rows stand in one field, the odd rows in the other.
namespace quillomar {

// Decodes both fields into unit.pixels; on the first decode also gathers the statistics, the line
// starts and the spare room and marks the unit decoded. A run that passes the row's end is cut
// there. Fails on a unit that is not complete or has no area.
Result DecodeBitmap(SubpictureUnit& unit, const SpuContext& context);
// Decodes only when the pixels are not held.
Result NeedBitmap(SubpictureUnit& unit, const SpuContext& context);

// Codes the given box of the unit's pixels into two fields that follow the unit's 4-byte header.
struct EncodedBitmap {
  Bytes codes;                  // top field, then bottom field; stands at byte 4 of the unit
  std::uint16_t topOffset = 0;  // from the unit's start
  std::uint16_t bottomOffset = 0;
};
[[nodiscard]] EncodedBitmap EncodeBitmap(const SubpictureUnit& unit, const ContentBox& crop);

// Whole re-encode after a crop or a new bitmap: crops to the content box plus margins (pixels,
// lines), writes codes, display area and field offsets. Fails, with the unit as it was, when the
// codes do not fit before the control sequences.
struct CropMargins {
  int x = 1;  // pixels
  int y = 1;  // lines
};
Result ReencodeBitmap(SubpictureUnit& unit, CropMargins margins, const SpuContext& context);

}  // namespace quillomar
