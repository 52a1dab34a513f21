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

// Decodes both fields into unit.pixels, in the place where they were found; on the first decode
// also gathers the statistics, the line starts and the spare room and marks the unit decoded. A run
// that passes the row's end is cut there; bytes past the unit's end read as zeros; rows below the
// frame only count for the spare room. Fails on a unit that is not complete or whose area holds no
// pixel of the frame.
Result DecodeBitmap(SubpictureUnit& unit, const SpuContext& context);
// Decodes only when the pixels are not held.
Result NeedBitmap(SubpictureUnit& unit, const SpuContext& context);

// Type of the background of a bitmap that begins with a pixel of `firstType`: that type or, where
// the first sequence makes it opaque and exactly one type transparent, the transparent one.
[[nodiscard]] int BackgroundTypeOf(const SpuState& state, int firstType);

// The smallest box around all pixels (a type each, rows of `width`) that are not background; that
// of an empty bitmap when there are none.
[[nodiscard]] ContentBox FindContent(ByteSpan pixels, int width, int background);

// Two fields that follow the unit's 4-byte header.
struct EncodedBitmap {
  Bytes codes;           // top field, then bottom field; stands at byte 4 of the unit
  int bottomOffset = 0;  // from the unit's start
  // First byte after the codes, from the unit's start.
  [[nodiscard]] int End() const { return static_cast<int>(kSpuHeaderSize + codes.size()); }
};
// Codes the given box of the unit's pixels, which must lie inside the bitmap; its top is an even
// row, so that each field keeps its lines.
[[nodiscard]] EncodedBitmap EncodeBitmap(const SubpictureUnit& unit, const ContentBox& crop);

struct CropMargins {
  int x = 1;  // pixels
  int y = 1;  // lines
};
// Whole re-encode after a crop or a change of unit.pixels (rows of state.width bytes that stand at
// state.areaAsFound): crops to the content box plus margins, writes codes, display area and field
// offsets, decodes anew and applies both moves again to the area that the crop leaves. Marks the
// unit modified when its bytes change. The codes may take the spare room and then the free room,
// for which the control sequences move up. Fails, with the unit's state as it was and its bitmap
// decoded again, when they do not fit and when a later sequence shows another bitmap.
Result ReencodeBitmap(SubpictureUnit& unit, CropMargins margins, const SpuContext& context);
// Cuts off the background around the content but for the margins; contract of ReencodeBitmap.
Result CropBackground(SubpictureUnit& unit, CropMargins margins, const SpuContext& context);

}  // namespace quillomar
