#pragma once

#include <span>

#include "spu/spu_pack.h"

namespace quillomar {

// How a pack was filled.
struct PackFill {
  std::size_t taken = 0;    // bytes of the unit that went into it
  bool zeroFilled = false;  // a gap too small for a padding stream was filled with zeros
};

// Puts as much of `data` as fits behind the pack's PES header and closes what is left with a
// padding stream, with stuffing in the PES header or, where neither fits, with zeros. `last`: no
// further pack belongs to the unit.
PackFill FillPack(MutableSector pack, ByteSpan data, std::uint8_t subStreamId, bool last);

// One padding stream over the whole pack; the pack header stays.
void MakePaddingPack(MutableSector pack);
// PES header of a pack that goes on with a unit: no header data. `flags` is the first flag byte.
void MakeContinuationPack(MutableSector pack, std::uint8_t flags);

// Bytes that a unit of `size` bytes needs more so that it leaves no gap to be filled with zeros in
// packs with that many bytes of PES header data; 0 where it needs none or does not fit.
[[nodiscard]] int FillerBytes(std::span<const int> headerLengths, int size);

}  // namespace quillomar
