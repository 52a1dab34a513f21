// Moving units in time: on the disc and in what is known of it, or in neither.

#include <algorithm>

#include "editor/document.h"
#include "retime/retimer.h"

namespace quillomar {
namespace {

// All that a retiming changes of what is known of a disc.
class KnownPlaces {
 public:
  KnownPlaces(const OwnedUnits& units, const ScanResults& results, IfoFile& ifo)
      : results_(results),
        ifoKib_(ifo.SizeKib()),
        ifoImage_(ifo.Image().begin(), ifo.Image().end()) {
    for (const OwnedUnit& unit : units) {
      units_.push_back({unit, unit->packs, unit->firstHeader, unit->state.pts, unit->ptsAsRead,
                        unit->globalTime, unit->navLba, unit->vcid, unit->clut, unit->number,
                        unit->numberInStream});
    }
  }

  void PutBack(OwnedUnits& units, ScanResults& results, IfoFile& ifo) const {
    units.clear();
    for (const Place& place : units_) {
      SubpictureUnit& unit = *place.unit;
      unit.packs = place.packs;
      unit.firstHeader = place.firstHeader;
      unit.state.pts = place.pts;
      unit.ptsAsRead = place.ptsAsRead;
      unit.globalTime = place.globalTime;
      unit.navLba = place.navLba;
      unit.vcid = place.vcid;
      unit.clut = place.clut;
      unit.number = place.number;
      unit.numberInStream = place.numberInStream;
      units.push_back(place.unit);
    }
    results = results_;
    std::copy(ifoImage_.begin(), ifoImage_.end(), ifo.Image().begin());
    (void)ifo.SetSizeKib(ifoKib_);
  }

 private:
  struct Place {
    OwnedUnit unit;
    std::vector<SpuPack> packs;
    std::array<std::uint8_t, kFirstHeaderSize> firstHeader;
    std::uint32_t pts;
    std::uint32_t ptsAsRead;
    std::int64_t globalTime;
    std::uint32_t navLba;
    Vcid vcid;
    std::optional<int> clut;
    int number;
    int numberInStream;
  };

  std::vector<Place> units_;  // in their order
  ScanResults results_;
  std::uint32_t ifoKib_;
  std::vector<std::uint8_t> ifoImage_;
};

}  // namespace

Result Document::Retime(const UnitList& selection, double seconds, JobControl& control) {
  if (Failed(CheckFiles())) return Result::kFailed;
  const std::unique_ptr<WriteTransaction> transaction = session_.transactions->Begin();
  OwnedUnits units = Owned();
  const OwnedUnits moved = OwnedOf(selection);
  const KnownPlaces before(units, results_, ifo_);
  Retimer retimer({set_, ifo_, cells_, results_, units}, *transaction, session_.reporter, control);
  const std::uint64_t bytes = retimer.SectorsChanged(moved, seconds) * kSectorSize + IfoBytes();
  if (Failed(transaction->Reserve(bytes))) return Result::kFailed;
  Result result = moved.size() == 1 ? retimer.RetimeOne(*moved.front(), seconds)
                                    : retimer.RetimeSelected(moved, seconds);
  if (!Failed(result)) result = transaction->Commit();
  if (Failed(result)) {
    before.PutBack(units, results_, ifo_);
  } else {
    if (retimer.UnitsRetimed() > 0) history_.Clear();
    NoteStamps();
  }
  const std::lock_guard lock(mutex_);
  units_ = std::move(units);
  return result;
}

}  // namespace quillomar
