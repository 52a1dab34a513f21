#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/transaction.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

// A .sup file holds the units of one stream without a disc, as records one behind the other:
//
//   0  2    "SP"
//   2  u32  PTS, 90 kHz, little-endian
//   6  u32  0; ignored when read
//  10  ...  the unit, beginning with its size
namespace quillomar {

inline constexpr std::uint16_t kSupMark = 0x5350;  // "SP" as a big-endian word
inline constexpr std::size_t kSupMarkOffset = 0;
inline constexpr std::size_t kSupPtsOffset = 2;
inline constexpr std::size_t kSupHeaderSize = 10;
// Bytes by which a unit of a .sup file may grow.
inline constexpr int kSupFreeRoom = 2048;
// A display area that ends on a later line needs a PAL frame.
inline constexpr int kLastNtscEnd = 480;

using SupUnits = std::vector<std::shared_ptr<SubpictureUnit>>;
// Byte position of the record of each unit.
using SupPositions = std::vector<std::int64_t>;

// A .sup file that was opened for editing.
struct SupFile {
  std::shared_ptr<File> file;
  bool canWrite = false;
  SupUnits units;  // in the order of the file, numbered from 1, all of stream 0
  VideoStandard standard = VideoStandard::kUnknown;  // by the last line that any unit covers
};

// Reads records until the first place where none begins; one that does not parse is left out with
// its message. A file that can only be opened for reading says so. Nothing, without a message, when
// it cannot be opened at all.
[[nodiscard]] std::optional<SupFile> LoadSup(FileSystem& files, const std::string& path,
                                             Reporter& reporter, ReportLimit& limit);

// Writes the units from the start of the file on, each without its spare room; what the file held
// beyond them stays. The units are not changed. Fails with a message, without a write when a unit
// cannot be read again.
[[nodiscard]] std::optional<SupPositions> SaveSup(const std::shared_ptr<File>& file,
                                                  const SupUnits& units,
                                                  WriteTransaction& transaction,
                                                  const SpuContext& context);

// To be called once the units of a loaded file were saved into it and the transaction was
// committed: each unit takes its new position and is loaded again, which clears its modified mark.
Result TakeSavedSup(File& file, const SupUnits& units, const SupPositions& positions,
                    const SpuContext& context);

// Reads the unit again from its record, dropping its edits; identity, numbers, CLUT and times stay.
// Fails with a message, changing nothing, when the record is no longer there.
Result ReloadSup(SubpictureUnit& unit, File& file, const SpuContext& context);

}  // namespace quillomar
