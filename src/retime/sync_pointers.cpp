#include "retime/sync_pointers.h"

#include "base/format.h"
#include "dvd/big_endian.h"
#include "dvd/pack.h"

namespace quillomar {
namespace {

constexpr std::uint16_t kAudioDistance = 0x7FFF;
constexpr std::uint32_t kFirstMpegAudio = 0x000001C0;
constexpr std::uint32_t kLastMpegAudio = 0x000001DF;

// The pointer from one nav pack to another.
std::uint32_t Pointer(std::uint32_t from, std::optional<std::uint32_t> to) {
  if (!to || *to == from) return kNoSubpictureSync;
  return *to < from ? kSubpictureSyncBackward | (from - *to) : *to - from;
}

bool IsNoAudio(std::uint16_t value) {
  return value == 0 || (value & kNoAudioSync) == kNoAudioSync;
}

}  // namespace

void SyncPointers::Update(std::size_t index, Sector& sector) {
  for (std::size_t i = 0; i < kAudioSyncEntries; ++i) {
    UpdateAudio(index, kAudioSyncOffset + 2 * i, sector);
  }
  for (int stream = 0; stream < kSubpictureStreams; ++stream) {
    UpdateSubpicture(index, stream, sector);
  }
}

bool SyncPointers::IsAudio(std::uint32_t lba) {
  Sector sector;
  if (Failed(set_.ReadSectors(transaction_, lba, 1, sector))) return false;
  const std::uint32_t code = GetInt(sector, kPesStartOffset);
  return ClassifyPack(sector).kind == PackKind::kAudio ||
         (code >= kFirstMpegAudio && code <= kLastMpegAudio);
}

void SyncPointers::UpdateAudio(std::size_t index, std::size_t offset, Sector& sector) {
  const std::uint16_t value = GetShort(sector, offset);
  if (IsNoAudio(value)) return;
  const VobuEntry& vobu = vobus_[index];
  const bool backward = (value & kAudioSyncBackward) != 0;
  const std::uint32_t distance = value & kAudioDistance;
  const std::uint32_t target = backward ? vobu.startLba - distance : vobu.startLba + distance;
  if (target >= set_.TotalSectors()) return;
  const std::uint32_t place = changes_.displaced.PlaceOf(target);
  const std::uint32_t now = backward ? vobu.currentLba - place : place - vobu.currentLba;
  if (now == distance) return;
  const bool wrong = changes_.displaced.WasMoved(target) || !IsAudio(place);
  if (wrong || now >= kNoAudioSync) {
    reporter_.LogLine(
        Format("Audio synchronisation pointer at LBA %u left as it was", vobu.currentLba));
    return;
  }
  PutShort(sector, offset, static_cast<std::uint16_t>((value & kAudioSyncBackward) | now));
}

void SyncPointers::UpdateSubpicture(std::size_t index, int stream, Sector& sector) {
  if (!changes_.before.HasStream(stream)) return;
  const auto was = changes_.before.ShownDuring(stream, index, vobus_, changes_.timeline);
  const auto is = changes_.after.ShownDuring(stream, index, vobus_, changes_.timeline);
  const auto start = [&](std::size_t vobu) { return vobus_[vobu].startLba; };
  const auto current = [&](std::size_t vobu) { return vobus_[vobu].currentLba; };
  const std::uint32_t right =
      Pointer(start(index), was ? std::optional(start(*was)) : std::nullopt);
  std::uint32_t next = Pointer(current(index), is ? std::optional(current(*is)) : std::nullopt);

  const std::size_t offset = kSubpictureSyncOffset + static_cast<std::size_t>(stream) * 4;
  const std::uint32_t value = GetInt(sector, offset);
  // Some authors say 0 where others say that there is none.
  const bool zero = value == 0 && right == kNoSubpictureSync;
  if (zero && next == kNoSubpictureSync) next = 0;
  if (value == next) return;
  if (value != right && !zero) {
    reporter_.LogLine(
        Format("Subpicture synchronisation pointer at LBA %u left as it was", current(index)));
    return;
  }
  PutInt(sector, offset, next);
}

}  // namespace quillomar
