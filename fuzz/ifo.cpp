// An arbitrary IFO is loaded, everything in it asked for, its colours changed, written and loaded
// again. Bit 0 of the first byte makes it the manager's.
#include <algorithm>

#include "author/ifo_builder.h"
#include "dvd/cell_map.h"
#include "dvd/ifo_file.h"
#include "dvd/ifo_layout.h"
#include "dvd/sector.h"
#include "fuzz_target.h"
#include "support/direct_transaction.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr int kUnitsAsked = 3;
constexpr int kChainsAsked = 4;
constexpr std::size_t kChainsChanged = 16;

class IfoRun {
 public:
  IfoRun(ByteSpan image, bool manager)
      : path_(manager ? "/VIDEO_TS.IFO" : "/VTS_01_0.IFO"),
        backup_(manager ? "/VIDEO_TS.BUP" : "/VTS_01_0.BUP") {
    files_.Put(path_, Bytes(image.begin(), image.end()));
  }

  void Run() {
    if (Failed(ifo_.Load(path_))) return;
    AskTables();
    for (int unit = 0; unit < kUnitsAsked; ++unit) {
      for (int number = 0; number < kChainsAsked; ++number) AskChain(unit, number);
    }
    CheckMap(BuildCellMap(ifo_, "/VTS_01_1.VOB"));
    CellMap menu = BuildCellMap(ifo_, "/VTS_01_0.VOB");
    CheckMap(menu);
    if (menu.cluts.size() > kChainsChanged) menu.cluts.resize(kChainsChanged);
    for (const ClutRecord& record : menu.cluts) ChangeColours(record.languageUnit, record.pgc);
    ChangeColours(0, 1);
    WriteAndCompare();
  }

 private:
  void AskTables() {
    for (int table = 0; table <= static_cast<int>(IfoTable::kTitleSetAttributes); ++table) {
      const auto start = ifo_.Table(static_cast<IfoTable>(table));
      Require(!start || *start < ifo_.Image().size());
      static_cast<void>(ifo_.TableEnd(static_cast<IfoTable>(table)));
    }
  }

  void AskChain(int unit, int number) {
    const auto chain = ifo_.ProgramChain(unit, number);
    Require(chain.has_value() == ifo_.Clut(unit, number).has_value() || number == 0);
    for (int id = kFirstSubpictureId; id < kFirstSubpictureId + kSubpictureStreams; ++id) {
      static_cast<void>(ifo_.SubpictureStream(unit, number, id));
    }
    for (int logical = 0; logical < kMaxAudioStreams; ++logical) {
      static_cast<void>(ifo_.AudioStream(unit, number, logical));
    }
    if (!chain) return;
    Require(*chain + kPgcSize <= ifo_.Image().size());
    const int cells = ifo_.Cells(*chain);
    for (const int cell : {0, 1, cells, cells + 1}) {
      static_cast<void>(ifo_.CellPlayback(*chain, cell));
      static_cast<void>(ifo_.CellPosition(*chain, cell));
    }
  }

  static void CheckMap(const CellMap& map) {
    for (const auto& [vcid, cell] : map.cells) {
      Require(!cell.chains.empty() && map.ClutOf(vcid).has_value());
      for (const int chain : cell.chains) {
        Require(chain >= 0 && static_cast<std::size_t>(chain) < map.cluts.size());
      }
    }
  }

  void ChangeColours(int unit, int number) {
    auto clut = ifo_.Clut(unit, number);
    if (!clut) return;
    for (YCrCb& entry : *clut) entry = ToYCrCb(ToRgb(entry));
    const Bytes before(ifo_.Image().begin(), ifo_.Image().end());
    if (Failed(ifo_.SetClut(unit, number, *clut))) {
      Require(std::equal(before.begin(), before.end(), ifo_.Image().begin()));
    } else {
      Require(ifo_.Clut(unit, number) == clut);
    }
  }

  void WriteAndCompare() {
    const auto transaction = source_.Begin();
    Require(!Failed(ifo_.Write(*transaction)) && !Failed(transaction->Commit()));
    Require(files_.Content(path_) == files_.Content(backup_));
    const Bytes written = files_.Content(path_);
    Require(!Failed(ifo_.Load(path_)));
    Require(std::equal(written.begin(), written.end(), ifo_.Image().begin()));
  }

  test::MemoryFileSystem files_;
  Reporter reporter_{files_};
  test::DirectTransactionSource source_{files_};
  IfoFile ifo_{files_, reporter_};
  std::string path_;
  std::string backup_;
};

author::IfoSpec Spec() {
  author::IfoSpec spec;
  spec.title = {3 << kAspectShift, {"en", "fr"}, {{0, "en", 6}, {4, "de", 2}}};
  spec.menu = {0, {"es"}, {{2, "it", 1}}};
  author::ChainSpec chain;
  chain.cells = {{{1, 1}, 0, 0, 20, 30}, {{1, 2}, 31, 0, 50, 60}};
  chain.clut[3] = {235, 128, 128};
  chain.subpictures = {{0, kPgcSubpictureAvailable | 0x0102}};
  chain.audio = {{0, kPgcAudioAvailable}};
  spec.titleChains = {chain};
  spec.menuUnits = {{"en", {chain}}};
  spec.titleVobus = {0, 20, 31, 50};
  return spec;
}

Bytes Seed(bool manager) {
  author::IfoSpec spec = Spec();
  spec.manager = manager;
  return WithFirst(manager ? 1 : 0, author::BuildIfo(spec));
}

}  // namespace

std::vector<Bytes> Seeds() {
  return {Seed(false), Seed(true)};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  quillomar::fuzz::IfoRun(quillomar::ByteSpan(data + 1, size - 1), (data[0] & 1) != 0).Run();
  return 0;
}
