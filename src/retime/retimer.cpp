#include "retime/retimer.h"

#include <algorithm>
#include <set>

#include "base/format.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"
#include "retime/pack_move.h"
#include "spu/pack_reader.h"
#include "spu/spu_pack.h"

namespace quillomar {
namespace {

std::array<bool, kSubpictureStreams> CrowdedStreams(const RetimedUnits& units,
                                                    const std::vector<VobuEntry>& vobus) {
  std::array<bool, kSubpictureStreams> crowded{};
  std::array<std::set<std::size_t>, kSubpictureStreams> taken;
  for (const auto& unit : units) {
    const auto vobu = VobuAt(vobus, unit->Lba());
    const auto stream = static_cast<std::size_t>(unit->stream);
    if (vobu && !taken[stream].insert(*vobu).second) crowded[stream] = true;
  }
  return crowded;
}

std::vector<std::uint32_t> AllPacks(const RetimedUnits& units) {
  std::vector<std::uint32_t> lbas;
  for (const auto& unit : units) {
    for (const SpuPack& pack : unit->packs) lbas.push_back(pack.lba);
  }
  return lbas;
}

void PatchTimeStamp(std::span<std::uint8_t> header, std::uint32_t pts) {
  PutTimeStamp(header.subspan(kPesHeaderDataOffset, kTimeStampSize), pts);
}

}  // namespace

Retimer::Retimer(const RetimedDisc& disc, WriteTransaction& transaction, Reporter& reporter,
                 JobControl& control)
    : disc_(disc),
      transaction_(transaction),
      reporter_(reporter),
      control_(control),
      timeline_(disc_.results.vobus),
      index_(disc_.set, disc_.units),
      buffer_(disc_.set, transaction_),
      shownBefore_(disc_.units, disc_.results.vobus, timeline_),
      packsBefore_(AllPacks(disc_.units)),
      crowded_(CrowdedStreams(disc_.units, disc_.results.vobus)) {}

Result Retimer::RetimeOne(SubpictureUnit& unit, double seconds) {
  consent_ = Consent::kNotAsked;
  const std::int64_t delta = DeltaTicks(seconds, disc_.results.standard);
  if (delta == 0) return Result::kDone;
  const Outcome outcome = Move(unit, delta);
  if (outcome == Outcome::kFailed) return Result::kFailed;
  if (outcome == Outcome::kMoved) return RepairNavigation();
  // Without a move, too, other VOBUs may play while the unit is shown.
  return retimed_ == 0 ? Result::kDone : RepairNavPacks(Displaced());
}

Result Retimer::RetimeSelected(std::span<const std::shared_ptr<SubpictureUnit>> selection,
                               double seconds) {
  consent_ = Consent::kNotAsked;
  const std::int64_t delta = DeltaTicks(seconds, disc_.results.standard);
  if (delta == 0) return Result::kDone;
  control_.operation = Operation::kRetiming;
  const std::size_t count = selection.size();
  for (std::size_t done = 0; done < count && !control_.abortRequested; ++done) {
    control_.percent = static_cast<int>(done * 100 / count);
    // The ones in front make room first.
    const std::size_t next = delta >= 0 ? count - 1 - done : done;
    if (Move(*selection[next], delta) == Outcome::kFailed) return Result::kFailed;
    if (consent_ == Consent::kRefused) break;
  }
  return RepairNavigation();
}

std::uint64_t Retimer::SectorsChanged(std::span<const std::shared_ptr<SubpictureUnit>> selection,
                                      double seconds) const {
  const std::int64_t delta = DeltaTicks(seconds, disc_.results.standard);
  const std::vector<VobuEntry>& vobus = disc_.results.vobus;
  std::vector<bool> crossed(vobus.size(), false);
  for (const auto& unit : selection) {
    const auto current = VobuAt(vobus, unit->Lba());
    const auto target =
        current ? timeline_.Target(*current, unit->state.pts + delta, delta >= 0) : std::nullopt;
    if (!target || *target == *current) continue;
    const auto [first, last] = CandidateRange(*target, vobus.size());
    std::fill(crossed.begin() + static_cast<std::ptrdiff_t>(std::min(first, *current)),
              crossed.begin() + static_cast<std::ptrdiff_t>(std::max(last, *current)) + 1, true);
  }
  std::uint64_t sectors = selection.size();
  for (std::size_t i = 0; i < vobus.size(); ++i) sectors += crossed[i] ? vobus[i].length : 1;
  return sectors;
}

bool Retimer::MayMove(const SubpictureUnit& unit) {
  if (unit.HasButtons()) {
    reporter_.LogLine(
        Format("Subpic %d seems to contain button highlights, not moving", unit.number));
    consent_ = Consent::kRefused;
    return false;
  }
  if (crowded_[static_cast<std::size_t>(unit.stream)] && consent_ == Consent::kNotAsked) {
    const bool yes = reporter_.AskYesNo(
        "The SPU stream has multiple SPUs in the same VOBU\n"
        "Re-timing might cause some SPUs to appear in the wrong order. Do you want to continue?");
    consent_ = yes ? Consent::kGiven : Consent::kRefused;
  }
  if (consent_ == Consent::kRefused) return false;
  if (unit.scrambled) {
    reporter_.ReportError(
        Format("Subpic %d at LBA %u is scrambled. It won't be moved.\n", unit.number, unit.Lba()));
    return false;
  }
  return true;
}

std::optional<Destination> Retimer::Choose(const SubpictureUnit& unit, std::size_t current,
                                           std::int64_t newTime, bool forward) {
  const auto target = timeline_.Target(current, newTime, forward);
  if (!target) return std::nullopt;
  const std::vector<VobuEntry>& vobus = disc_.results.vobus;
  const auto free = [&](std::size_t vobu) {
    return vobu + 1 < vobus.size() && vobus[vobu].freeSlots >= unit.packs.size() &&
           !index_.HasOtherOfStream(vobus[vobu], unit);
  };
  return ChooseDestination(timeline_, current, *target, vobus.size(), free);
}

Retimer::Outcome Retimer::Move(SubpictureUnit& unit, std::int64_t delta) {
  if (!MayMove(unit)) return Outcome::kStays;
  const auto current = VobuAt(disc_.results.vobus, unit.Lba());
  const std::int64_t newTime = std::int64_t{unit.state.pts} + delta;
  const auto destination =
      current && !unit.packs.empty() ? Choose(unit, *current, newTime, delta >= 0) : std::nullopt;
  if (!destination) {
    reporter_.ReportError(
        Format("Can't find an empty slot for subpic %d! It won't be moved....\n", unit.number));
    return Outcome::kStays;
  }
  if (destination->vobu == *current) {
    reporter_.LogLine(Format("No moving required for spu %d, setting PTS", unit.number));
    return ChangeTimeOnly(unit, delta);
  }
  if (disc_.results.interleaved) {
    reporter_.ReportError(
        Format("This timing change for spu %d would require moving the subpic pack.\n"
               "Interleaved video units (ILVUs) were found in the VOB file. I can't move the pack",
               unit.number));
    consent_ = Consent::kRefused;
    return Outcome::kStays;
  }
  reporter_.LogLine(Format("Moving spu %d from VOBU %d to VOBU %d -- %d", unit.number,
                           static_cast<int>(*current), static_cast<int>(destination->vobu),
                           destination->candidate));
  return MovePacks(unit, delta, *current, destination->vobu);
}

Retimer::Outcome Retimer::Refuse(const char* text) {
  reporter_.ReportError(text);
  return buffer_.WriteFailed() ? Outcome::kFailed : Outcome::kStays;
}

Retimer::Outcome Retimer::ChangeTimeOnly(SubpictureUnit& unit, std::int64_t delta) {
  const std::uint32_t lba = unit.Lba();
  if (Failed(buffer_.Load(lba, lba))) return Refuse("Couldn't load memory");
  const SectorView pack = buffer_.At(lba);
  if (!IsAsRead(unit.packs.front(), pack) || !BeginsUnit(pack) || !HasTimeStamp(pack)) {
    return Refuse("Problem moving the pack!");
  }
  ShiftTime(unit, delta);
  PatchTimeStamp(buffer_.Edit(lba), unit.state.pts);
  return Failed(FlushBuffer()) ? Outcome::kFailed : Outcome::kStays;
}

Result Retimer::LoadRun(const SubpictureUnit& unit, std::size_t current, std::size_t chosen) {
  const std::vector<VobuEntry>& vobus = disc_.results.vobus;
  std::size_t last = std::max(current, chosen);
  for (const SpuPack& pack : unit.packs) {
    last = std::max(last, VobuAt(vobus, pack.lba).value_or(last));
  }
  const std::size_t first = std::min(current, chosen);
  const VobuEntry& from = vobus[first == 0 ? 0 : first - 1];
  const VobuEntry& to = vobus[std::min(last + 1, vobus.size() - 1)];
  return buffer_.Load(from.currentLba, to.currentLba + to.length - 1);
}

Retimer::Outcome Retimer::MovePacks(SubpictureUnit& unit, std::int64_t delta, std::size_t current,
                                    std::size_t chosen) {
  std::vector<VobuEntry>& vobus = disc_.results.vobus;
  if (Failed(LoadRun(unit, current, chosen))) return Refuse("Couldn't load memory");
  std::vector<std::uint32_t> sources;
  for (const SpuPack& pack : unit.packs) sources.push_back(pack.lba);
  const auto slots = FindSlots(buffer_, vobus[chosen], sources);
  if (!slots) return Refuse("Couldn't locate an empty slot!");
  const auto held = [&](const SpuPack& pack) {
    return buffer_.Holds(pack.lba) && IsAsRead(pack, buffer_.At(pack.lba));
  };
  if (!std::all_of(unit.packs.begin(), unit.packs.end(), held) ||
      !BeginsUnit(buffer_.At(unit.Lba())) || !HasTimeStamp(buffer_.At(unit.Lba()))) {
    return Refuse("Problem moving the pack!");
  }
  const std::size_t end = VobuAt(vobus, unit.packs.back().lba).value_or(current);
  for (std::size_t i = 0; i < slots->size(); ++i) {
    const PackMove move = SetUpMove(unit.packs[i].lba, (*slots)[i]);
    PerformMove(move, buffer_, vobus);
    index_.Follow(move, unit, i);
  }
  PlaceInVobus(std::min(current, chosen), std::max({current, chosen, end}));
  unit.vcid = ParseNavPack(buffer_.At(vobus[chosen].currentLba)).vcid;
  unit.clut = disc_.cells.ClutOf(unit.vcid);
  ShiftTime(unit, delta);
  PatchTimeStamp(buffer_.Edit(unit.Lba()), unit.state.pts);
  const SectorView first = buffer_.At(unit.Lba());
  std::copy_n(first.begin() + kClockReferenceOffset, kClockReferenceSize,
              unit.firstHeader.begin() + kClockReferenceOffset);
  return Outcome::kMoved;
}

void Retimer::ShiftTime(SubpictureUnit& unit, std::int64_t delta) {
  unit.state.pts = static_cast<std::uint32_t>(unit.state.pts + delta);
  unit.ptsAsRead = unit.state.pts;
  unit.globalTime += delta;
  PatchTimeStamp(unit.firstHeader, unit.state.pts);
  ++retimed_;
}

// Nav packs have shifted, with or without the units behind them.
void Retimer::PlaceInVobus(std::size_t first, std::size_t last) {
  for (std::size_t i = first; i <= last; ++i) {
    const VobuEntry& vobu = disc_.results.vobus[i];
    for (SubpictureUnit* const unit :
         index_.Starting(vobu.currentLba, vobu.currentLba + vobu.length)) {
      unit->navLba = vobu.currentLba;
    }
  }
}

Result Retimer::FlushBuffer() {
  if (!Failed(buffer_.Flush())) return Result::kDone;
  reporter_.ReportError("The moved packs could not be written to the disk.");
  return Result::kFailed;
}

}  // namespace quillomar
