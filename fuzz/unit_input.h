#pragma once

#include "author/spu_builder.h"
#include "dvd/big_endian.h"
#include "fuzz_target.h"
#include "spu/parse.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {

// A unit of arbitrary bytes, whose size field is mended as gathering would have demanded it, and
// what is needed to work on it.
class UnitInput {
 public:
  // False when that cannot be a unit.
  [[nodiscard]] bool Take(ByteSpan bytes, int freeRoom) {
    if (bytes.size() < kSpuHeaderSize || bytes.size() > kMaxSpuSize) return false;
    unit = author::MakeUnit(Bytes(bytes.begin(), bytes.end()));
    PutShort(unit.state.bytes, kSpuSizeOffset, static_cast<std::uint16_t>(bytes.size()));
    unit.state.freeRoom = freeRoom;
    return !Failed(ParseControlSequences(unit, 0, 0, context));
  }

 private:
  test::MemoryFileSystem files_;
  Reporter reporter_{files_};
  ReportLimit limit_{reporter_};

 public:
  SpuContext context{reporter_, limit_, VideoStandard::kPal};
  SubpictureUnit unit;
};

// The head of an input and the unit behind it.
inline Bytes WithUnit(Bytes head, const author::SpuDescription& description) {
  const Bytes unit = author::BuildSpu(description);
  head.insert(head.end(), unit.begin(), unit.end());
  return head;
}

}  // namespace quillomar::fuzz
