#include <dvdread/dvd_reader.h>
#include <dvdread/ifo_read.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "base/platform.h"
#include "dvd/big_endian.h"
#include "dvd/ifo_file.h"
#include "dvd/ifo_layout.h"
#include "dvd/pack.h"
#include "dvd/vob_name.h"
#include "support/message_collector.h"

// Holds the IFO reader against libdvdread, on the demo discs: the folders named by QUILLOMAR_DISCS
// that hold a VIDEO_TS folder.
namespace quillomar {
namespace {

namespace fs = std::filesystem;

struct CloseReader {
  void operator()(dvd_reader_t* reader) const { DVDClose(reader); }
};
struct CloseIfo {
  void operator()(ifo_handle_t* ifo) const { ifoClose(ifo); }
};
using ReaderHandle = std::unique_ptr<dvd_reader_t, CloseReader>;
using IfoHandle = std::unique_ptr<ifo_handle_t, CloseIfo>;

YCrCb FromPalette(std::uint32_t entry) {
  return {static_cast<std::uint8_t>(entry >> 16), static_cast<std::uint8_t>(entry >> 8),
          static_cast<std::uint8_t>(entry)};
}

std::string Letters(std::uint16_t code) {
  std::string letters = "  ";
  if (code >> 8 != 0) letters[0] = static_cast<char>(code >> 8);
  if ((code & 0xFF) != 0) letters[1] = static_cast<char>(code & 0xFF);
  return letters;
}

// One IFO read by both.
class Comparison {
 public:
  struct Counts {
    int chains = 0, cells = 0, vobus = 0;
    std::set<std::string> languages;
  };
  Comparison(IfoFile& ours, const ifo_handle_t& theirs, Counts& seen)
      : ours_(ours), theirs_(theirs), seen_(seen) {}

  void Run() {
    if (theirs_.first_play_pgc != nullptr) CompareChain(0, 0, *theirs_.first_play_pgc);
    if (theirs_.vts_pgcit != nullptr) CompareChains(0, *theirs_.vts_pgcit);
    const int units = theirs_.pgci_ut == nullptr ? 0 : theirs_.pgci_ut->nr_of_lus;
    ASSERT_EQ(ours_.LanguageUnits(), units);
    for (int unit = 1; unit <= units; ++unit) {
      CompareChains(unit, *theirs_.pgci_ut->lu[unit - 1].pgcit);
    }
    CompareVobuMap(IfoTable::kTitleVobus, theirs_.vts_vobu_admap);
    CompareVobuMap(IfoTable::kMenuVobus, theirs_.menu_vobu_admap);
    CompareEnd(IfoTable::kTitleCells, theirs_.vts_c_adt);
    CompareEnd(IfoTable::kMenuCells, theirs_.menu_c_adt);
    CompareEnd(IfoTable::kTimeMap, theirs_.vts_tmapt);
    CompareEnd(IfoTable::kTitleSearch, theirs_.tt_srpt);
  }

 private:
  void CompareChains(int unit, const pgcit_t& table) {
    ASSERT_EQ(ours_.ProgramChains(unit), table.nr_of_pgci_srp);
    for (int number = 1; number <= table.nr_of_pgci_srp; ++number) {
      CompareChain(unit, number, *table.pgci_srp[number - 1].pgc);
    }
  }

  void CompareChain(int unit, int number, const pgc_t& theirs) {
    SCOPED_TRACE("unit " + std::to_string(unit) + ", chain " + std::to_string(number));
    ++seen_.chains;
    const auto chain = ours_.ProgramChain(unit, number);
    const auto clut = ours_.Clut(unit, number);
    ASSERT_TRUE(chain && clut);
    for (std::size_t i = 0; i < clut->size(); ++i) {
      EXPECT_EQ(clut->at(i), FromPalette(theirs.palette[i])) << i;
    }
    ASSERT_EQ(ours_.Cells(*chain), theirs.nr_of_cells);
    for (int cell = 1; cell <= theirs.nr_of_cells; ++cell) CompareCell(*chain, cell, theirs);
    if (theirs_.vtsi_mat != nullptr) CompareStreams(unit, number, theirs);
  }

  void CompareCell(std::size_t chain, int cell, const pgc_t& theirs) {
    ++seen_.cells;
    const cell_playback_t& played = theirs.cell_playback[cell - 1];
    const auto playback = ours_.CellPlayback(chain, cell);
    const auto position = ours_.CellPosition(chain, cell);
    ASSERT_TRUE(playback && position);
    EXPECT_EQ(ours_.GetInt(*playback, kCellFirstVobuOffset), played.first_sector);
    EXPECT_EQ(ours_.GetInt(*playback, kCellFirstIlvuEndOffset), played.first_ilvu_end_sector);
    EXPECT_EQ(ours_.GetInt(*playback, kCellLastVobuOffset), played.last_vobu_start_sector);
    EXPECT_EQ(ours_.GetInt(*playback, kCellLastVobuEndOffset), played.last_sector);
    EXPECT_EQ(GetShort(ours_.Image(), *position + kCellVobIdOffset),
              theirs.cell_position[cell - 1].vob_id_nr);
    EXPECT_EQ(GetByte(ours_.Image(), *position + kCellIdOffset),
              theirs.cell_position[cell - 1].cell_nr);
  }

  void CompareStreams(int unit, int number, const pgc_t& theirs) {
    const vtsi_mat_t& header = *theirs_.vtsi_mat;
    const video_attr_t& video = unit > 0 ? header.vtsm_video_attr : header.vts_video_attr;
    for (int logical = 0; logical < kSubpictureStreams; ++logical) {
      const std::uint32_t control = theirs.subp_control[logical];
      if ((control & kPgcSubpictureAvailable) == 0) continue;
      const bool wide = video.display_aspect_ratio == 3;
      const int id = kFirstSubpictureId + static_cast<int>(control >> (wide ? 16 : 24) & 0x1F);
      const subp_attr_t& attributes =
          unit > 0 ? header.vtsm_subp_attr : header.vts_subp_attr[logical];
      const SubpictureStreamInfo info = ours_.SubpictureStream(unit, number, id);
      EXPECT_TRUE(info.found);
      EXPECT_NE(info.modes & (wide ? kModeWide : kMode4x3), 0);
      EXPECT_EQ(info.language, Letters(attributes.lang_code)) << id;
      seen_.languages.insert(info.language);
    }
    for (int logical = 0; logical < 8; ++logical) {
      const auto audio = ours_.AudioStream(unit, number, logical);
      ASSERT_EQ(audio.has_value(), (theirs.audio_control[logical] & kPgcAudioAvailable) != 0);
      if (!audio) continue;
      const audio_attr_t& attributes =
          unit > 0 ? header.vtsm_audio_attr : header.vts_audio_attr[logical];
      EXPECT_EQ(audio->channels, attributes.channels + 1);
      EXPECT_EQ(audio->language, Letters(attributes.lang_code));
      EXPECT_EQ(audio->coding == "AC3", attributes.audio_format == 0);
    }
  }

  void CompareVobuMap(IfoTable code, const vobu_admap_t* theirs) {
    if (!CompareEnd(code, theirs)) return;
    const std::size_t table = *ours_.Table(code);
    const std::size_t count = (theirs->last_byte + 1 - VOBU_ADMAP_SIZE) / 4;
    for (std::size_t i = 0; i < count; ++i) {
      EXPECT_EQ(ours_.GetInt(table, (i + 1) * 4), theirs->vobu_start_sectors[i]) << i;
    }
    seen_.vobus += static_cast<int>(count);
  }

  // False when neither has the table.
  template <typename Table>
  bool CompareEnd(IfoTable code, const Table* theirs) {
    const auto table = ours_.Table(code);
    const auto end = ours_.TableEnd(code);
    EXPECT_EQ(end.has_value(), theirs != nullptr) << static_cast<int>(code);
    if (!table || !end || theirs == nullptr) return false;
    EXPECT_EQ(*end - *table, theirs->last_byte);
    return true;
  }

  IfoFile& ours_;
  const ifo_handle_t& theirs_;
  Counts& seen_;
};

TEST(Dvdread, ReadsTheSameChainsCellsColoursLanguagesAndMaps) {
  const char* folder = std::getenv("QUILLOMAR_DISCS");
  if (folder == nullptr) GTEST_SKIP() << "QUILLOMAR_DISCS names no folder of demo discs";
  test::MessageCollector messages;
  const std::unique_ptr<FileSystem> files = MakeDiskFileSystem();
  IfoFile ifo{*files, messages.reporter};
  Comparison::Counts seen;
  for (const auto& entry : fs::directory_iterator(folder)) {
    const fs::path disc = entry.path() / "VIDEO_TS";
    if (!fs::is_directory(disc)) continue;
    const ReaderHandle reader(DVDOpen(disc.c_str()));
    ASSERT_TRUE(reader) << disc;
    for (int titleSet = 0; fs::exists(disc / IfoName(titleSet)); ++titleSet) {
      SCOPED_TRACE((disc / IfoName(titleSet)).string());
      const IfoHandle theirs(ifoOpen(reader.get(), titleSet));
      ASSERT_TRUE(theirs);
      ASSERT_EQ(ifo.Load((disc / IfoName(titleSet)).string()), Result::kDone);
      Comparison(ifo, *theirs, seen).Run();
    }
  }
  EXPECT_TRUE(messages.LogLines().empty());
  EXPECT_GE(seen.chains, 2);
  EXPECT_GE(seen.cells, 2);
  EXPECT_GE(seen.vobus, 2);
  EXPECT_EQ(seen.languages.count("en"), 1U);
}

}  // namespace
}  // namespace quillomar
