#include "video/disc_reader.h"

#include <algorithm>

namespace quillomar {

DiscReader::DiscReader(FileSystem& files, const VobFileSet& set) : total_(set.TotalSectors()) {
  for (const VobFile& vob : set.Files()) {
    pieces_.push_back({files.Open(vob.path, OpenMode::kReadOnly), vob.startLba, vob.length});
  }
}

std::uint32_t DiscReader::Read(std::uint32_t lba, std::span<std::uint8_t> out) {
  const auto holds = [lba](const Piece& piece) {
    return lba >= piece.startLba && lba - piece.startLba < piece.length;
  };
  const auto piece = std::find_if(pieces_.begin(), pieces_.end(), holds);
  if (piece == pieces_.end() || !piece->file) return 0;
  const std::uint32_t lbaInFile = lba - piece->startLba;
  const std::size_t count =
      std::min<std::size_t>(out.size() / kSectorSize, piece->length - lbaInFile);
  const auto read =
      piece->file->ReadAt(std::uint64_t{lbaInFile} * kSectorSize, out.first(count * kSectorSize));
  return static_cast<std::uint32_t>(read.value_or(0) / kSectorSize);
}

const std::uint8_t* SectorCursor::Next() {
  if (index_ == count_) {
    index_ = 0;
    count_ = reader_.Read(lba_, block_);
    if (count_ == 0) return nullptr;
  }
  ++lba_;
  return block_.data() + kSectorSize * index_++;
}

}  // namespace quillomar
