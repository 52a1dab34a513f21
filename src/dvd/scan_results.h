#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "dvd/nav_pack.h"
#include "dvd/video_standard.h"

namespace quillomar {

// One video object unit, from its nav pack to the next.
struct VobuEntry {
  std::uint32_t startLba = 0;    // LBA in set, as scanned
  std::uint32_t currentLba = 0;  // moves with retiming
  std::uint32_t startTime = 0;   // 90 kHz
  std::uint32_t endTime = 0;     // 90 kHz
  std::uint32_t freeSlots = 0;   // packs that could still be multiplexed in
  std::uint32_t length = 0;      // sectors
  SearchInfo searchInfo{};
};

// Everything a scan learns besides the subpictures.
struct ScanResults {
  VideoStandard standard = VideoStandard::kUnknown;
  std::optional<bool> mpeg2;  // nothing when no I-picture was found
  int width = 720;            // of MPEG-2 sequence headers, else the default
  int height = 480;
  int aspect = 0;                            // sequence header's aspect ratio code
  double frameRate = 0;                      // frames a second; 0 where unknown
  std::optional<std::uint32_t> videoLba;     // pack that settled the standard, LBA in set
  std::vector<VobuEntry> vobus;              // in LBA order
  std::vector<std::uint32_t> scannedStarts;  // VOBU starts and the end LBA, as scanned
  std::vector<std::uint32_t> currentStarts;  // working copy for retiming
  std::vector<std::uint32_t> timeRestarts;   // nav packs on both sides of each restart, LBA in set
  // Nav packs whose highlight went to some subpicture, LBA in set.
  std::vector<std::uint32_t> highlightNavs;
  bool interleaved = false;
  bool closedCaptions = false;
  int highestStream = -1;  // 0 to 31
  int unitsFound = 0;
  bool complete = false;  // the scan went to its end
};

}  // namespace quillomar
