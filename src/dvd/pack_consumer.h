#pragma once

#include <cstdint>

#include "dvd/nav_pack.h"
#include "dvd/sector.h"
#include "dvd/video_standard.h"

namespace quillomar {

enum class GatherResult { kFailed = -1, kNeedMore = 0, kComplete = 1 };

// Where a subpicture pack was found.
struct PackContext {
  int fileIndex = 0;
  std::uint32_t lba = 0;  // LBA in set
  std::uint32_t lbaInFile = 0;
  Vcid vcid;                             // of the last nav pack
  int stream = 0;                        // 0 to 31
  std::uint32_t navLba = 0;              // LBA in set of the VOBU's nav pack
  int unitNumber = 0;                    // units found so far, in the whole set
  int buttonCount = 0;                   // of the last nav pack
  const Highlight* highlight = nullptr;  // the last one seen; never null during a scan
};

// Takes the subpicture packs that a scan finds. Called on the scan's thread.
class PackConsumer {
 public:
  virtual ~PackConsumer() = default;
  // One pack. kComplete and kFailed end the unit in progress of its stream.
  virtual GatherResult TakePack(SectorView pack, const PackContext& context) = 0;
  // After kComplete: the unit of that stream is whole. Its global time is its time stamp plus
  // `timeOffset` (ticks). Returns false when the unit was not usable and has been dropped.
  virtual bool CompleteUnit(int stream, std::int64_t timeOffset) = 0;
  // The scan has found out the video standard.
  virtual void StandardFound(VideoStandard standard) = 0;
  // After kFailed.
  virtual void DropUnit(int stream) = 0;
};

}  // namespace quillomar
