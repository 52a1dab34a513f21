#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/job_control.h"
#include "base/reporting.h"
#include "base/transaction.h"
#include "dvd/cell_map.h"
#include "dvd/ifo_file.h"
#include "dvd/scan_results.h"
#include "dvd/vob_file_set.h"
#include "retime/displaced.h"
#include "retime/move_buffer.h"
#include "retime/pack_index.h"
#include "retime/shown_units.h"
#include "retime/timeline.h"

namespace quillomar {

// What a retiming works on; all of it must outlive the retiming.
struct RetimedDisc {
  VobFileSet& set;
  IfoFile& ifo;  // of the set's title domain, if loaded
  const CellMap& cells;
  ScanResults& results;
  // All units of the set in the order of their numbers; a retiming sorts and numbers them anew.
  RetimedUnits& units;
};

// One retiming, one call: moves units of a disc by a number of seconds and repairs its navigation.
// The disc must be a whole title domain, scanned to its end. Everything is written through the
// transaction, which stays the caller's to commit. Unsaved edits of the units are neither written
// nor lost.
class Retimer {
 public:
  Retimer(const RetimedDisc& disc, WriteTransaction& transaction, Reporter& reporter,
          JobControl& control);

  // Sectors of the set that moving these units changes at most, or nearly so: those between where
  // they are and where they may go, and all nav packs.
  [[nodiscard]] std::uint64_t SectorsChanged(
      std::span<const std::shared_ptr<SubpictureUnit>> selection, double seconds) const;

  // Moves one unit; repairs the navigation if its packs had to move. Fails on a failing disk only:
  // what is known of the disc is then half of what it was and half of what it would have become.
  Result RetimeOne(SubpictureUnit& unit, double seconds);
  // Moves the units of a selection, given in the order of the list. Stops where the user or a unit
  // says so; units moved until then stay moved.
  Result RetimeSelected(std::span<const std::shared_ptr<SubpictureUnit>> selection, double seconds);

  // Units that have a new time.
  [[nodiscard]] int UnitsRetimed() const { return retimed_; }

 private:
  enum class Outcome { kMoved, kStays, kFailed };
  enum class Consent { kRefused = -1, kNotAsked = 0, kGiven = 1 };

  Outcome Move(SubpictureUnit& unit, std::int64_t delta);
  [[nodiscard]] bool MayMove(const SubpictureUnit& unit);
  [[nodiscard]] std::optional<Destination> Choose(const SubpictureUnit& unit, std::size_t current,
                                                  std::int64_t newTime, bool forward);
  Outcome ChangeTimeOnly(SubpictureUnit& unit, std::int64_t delta);
  Outcome MovePacks(SubpictureUnit& unit, std::int64_t delta, std::size_t current,
                    std::size_t chosen);
  Result LoadRun(const SubpictureUnit& unit, std::size_t current, std::size_t chosen);
  Outcome Refuse(const char* text);
  void ShiftTime(SubpictureUnit& unit, std::int64_t delta);
  void PlaceInVobus(std::size_t first, std::size_t last);
  [[nodiscard]] Result FlushBuffer();

  Result RepairNavigation();
  Result RepairNavPacks(const DisplacedPacks& displaced);
  void SortMasterLists();
  [[nodiscard]] DisplacedPacks Displaced() const;
  void TakeOverPlaces(const DisplacedPacks& displaced);

  RetimedDisc disc_;
  WriteTransaction& transaction_;
  Reporter& reporter_;
  JobControl& control_;

  Timeline timeline_;
  PackIndex index_;
  MoveBuffer buffer_;
  ShownUnits shownBefore_;
  std::vector<std::uint32_t> packsBefore_;  // LBAs in set of all units' packs, before any move
  std::array<bool, kSubpictureStreams> crowded_{};  // several units of the stream in one VOBU
  Consent consent_ = Consent::kNotAsked;
  int retimed_ = 0;
};

}  // namespace quillomar
