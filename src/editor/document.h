#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "dvd/cell_map.h"
#include "dvd/ifo_file.h"
#include "dvd/pack_consumer.h"
#include "dvd/scanner.h"
#include "dvd/vob_file_set.h"
#include "editor/edit_history.h"
#include "editor/session.h"
#include "spu/gather.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"
#include "spu/sup_file.h"

namespace quillomar {

// The open file set with everything that a scan found in it. Scan and Save run on the worker; while
// a scan runs the front end may call Units, Standard and HighestStream and work with finished
// units.
class Document final : private PackConsumer {
 public:
  explicit Document(Session& session);

  // Forgets everything and closes the files.
  void Reset();
  Result AddFile(const std::string& path) { return set_.AddFile(path); }
  Result OpenFullDomain(const std::string& path) { return set_.OpenFullDomain(path); }
  // After the files were added: brings them in order and reads the IFO of the first. A missing IFO
  // is logged; the colours are then unknown.
  void Prepare();
  // With a list, only these LBAs in set are read: a fast open, after which nothing can be retimed.
  void Scan(std::optional<std::vector<std::uint32_t>> lbas);

  // Loads a .sup file in place of VOBs; its colours are unknown until an IFO is attached. Fails,
  // with nothing open, when the file cannot be opened.
  Result OpenSup(const std::string& path);
  // Reads the colour tables of an IFO's title domain for a .sup file. Fails with a message.
  Result AttachIfo(const std::string& path);
  // Gives all units of a .sup file the colours of one of those tables.
  void UseClut(int index);
  // Writes units of one stream into a .sup file of their own.
  Result ExportSup(const UnitList& units, const std::string& path);

  [[nodiscard]] bool IsOpen() const { return !set_.Empty() || InSupMode(); }
  [[nodiscard]] bool InSupMode() const { return sup_.file != nullptr; }
  [[nodiscard]] bool CanSave() const { return InSupMode() ? sup_.canWrite : set_.CanSave(); }
  // The first file's path.
  [[nodiscard]] const std::string& Path() const;
  [[nodiscard]] const VobFileSet& Files() const { return set_; }
  // As they were given, in their order: VOBs or the .sup file.
  [[nodiscard]] std::vector<std::string> OpenedPaths() const;
  // All files that a save or a retiming of this set changes, an IFO's backup included.
  [[nodiscard]] std::vector<std::string> JournaledPaths() const;
  // From now on nothing is written.
  void ForbidSaving();
  // All units in the order of the scan, as a snapshot.
  [[nodiscard]] UnitList Units() const;
  [[nodiscard]] int UnitCount() const;
  // VOB id and cell id pairs of the units, in the order in which they come.
  [[nodiscard]] std::vector<Vcid> Vcids() const;
  // Start time of the unit that follows in the same stream.
  [[nodiscard]] std::optional<std::uint32_t> NextPts(const SubpictureUnit& unit) const;
  [[nodiscard]] VideoStandard Standard() const;
  // 0 to 31, -1 without subpictures.
  [[nodiscard]] int HighestStream() const;
  // Only between scans.
  [[nodiscard]] const ScanResults& Results() const { return results_; }
  [[nodiscard]] const CellMap& Cells() const { return cells_; }
  [[nodiscard]] IfoFile& Ifo() { return ifo_; }
  [[nodiscard]] SpuContext Context();

  // Where units and colour tables are opened to be changed. Ends with a save, a retiming and
  // another file set or IFO.
  [[nodiscard]] EditHistory& History() { return history_; }
  [[nodiscard]] const EditHistory& History() const { return history_; }
  // A unit for what is no edit, such as decoding it or choosing its sequence, and for edits of a
  // program that takes nothing back.
  [[nodiscard]] static SubpictureUnit& Unrecorded(const UnitPointer& unit) {
    return const_cast<SubpictureUnit&>(*unit);
  }

  // Some unit or CLUT has changes that are not saved.
  [[nodiscard]] bool Modified() const;
  // Writes modified CLUTs, then every modified unit, in one transaction, and reads the units again.
  // What could not be written is reported and stays modified. `progress` gets the units done and
  // their number.
  Result Save(JobControl& control);
  // Moves units, given in the order of the list, by a number of seconds and repairs the navigation,
  // in one transaction. Only for a whole title domain, scanned to its end. What could not be moved
  // is reported; fails, with everything as it was, when there is no room to keep what would be
  // overwritten, and on a failing disk.
  Result Retime(const UnitList& selection, double seconds, JobControl& control);
  Result ReloadUnit(SubpictureUnit& unit);
  // The colour table of a program chain, also of one outside the open domain, for changes that are
  // not recorded; null when the IFO has no such chain. Valid until the next call.
  [[nodiscard]] ClutRecord* UnrecordedClut(int languageUnit, int pgc);
  // Takes back unsaved changes of all CLUTs, as part of the open step.
  void RevertCluts();

 private:
  GatherResult TakePack(SectorView pack, const PackContext& context) override;
  bool CompleteUnit(int stream, std::int64_t timeOffset) override;
  void DropUnit(int stream) override;
  void StandardFound(VideoStandard standard) override;
  // Remembers how the files are now, which CheckFiles compares with.
  void NoteStamps();
  // Refuses, with a message, files that something else has changed meanwhile, or that can no longer
  // be written.
  [[nodiscard]] Result CheckFiles();
  // Of the IFO and its backup.
  [[nodiscard]] std::uint64_t IfoBytes() const;
  [[nodiscard]] Result ReserveForSave(WriteTransaction& transaction);
  Result SaveCluts(WriteTransaction& transaction);
  Result SaveVobs(JobControl& control);
  Result SaveIntoSup();
  [[nodiscard]] OwnedUnits Owned() const;
  [[nodiscard]] static OwnedUnits OwnedOf(const UnitList& units);
  void MarkClutsSaved();
  Result SaveUnits(WriteTransaction& transaction, JobControl& control, OwnedUnits& saved);

  Session& session_;
  VobFileSet set_;
  SupFile sup_;
  std::string supPath_;
  std::map<std::string, std::optional<FileStamp>> stamps_;  // by path
  IfoFile ifo_;
  CellMap cells_;
  EditHistory history_{cells_};
  ScanResults results_;
  std::array<std::unique_ptr<SpuGatherer>, kSubpictureStreams> gatherers_;
  std::array<int, kSubpictureStreams> streamCounts_{};  // units finished, by stream

  mutable std::mutex mutex_;  // guards the three below
  OwnedUnits units_;
  VideoStandard standard_ = VideoStandard::kUnknown;
  int highestStream_ = -1;
};

}  // namespace quillomar
