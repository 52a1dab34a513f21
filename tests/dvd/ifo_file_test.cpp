#include "dvd/ifo_file.h"

#include <gtest/gtest.h>

#include "author/ifo_builder.h"
#include "dvd/big_endian.h"
#include "dvd/cell_map.h"
#include "dvd/ifo_layout.h"
#include "support/direct_transaction.h"
#include "support/message_collector.h"

namespace quillomar {
namespace {

constexpr const char* kPath = "/d/VTS_01_0.IFO";
constexpr std::uint8_t kWideLetterboxPanScan = 3 << kAspectShift;

std::uint32_t Control(std::uint32_t full, std::uint32_t wide, std::uint32_t letterbox,
                      std::uint32_t panScan) {
  return kPgcSubpictureAvailable | full << 24 | wide << 16 | letterbox << 8 | panScan;
}

// Two title chains that share a cell, two menu languages, two subtitle and two audio streams.
author::IfoSpec TitleSet() {
  author::IfoSpec spec;
  spec.title = {kWideLetterboxPanScan, {"en", "fr"}, {{0, "en", 6}, {4, "de", 2}}};
  spec.menu = {0, {"es"}, {{2, "it", 1}}};
  author::ChainSpec first;
  first.cells = {{{1, 1}, 0, 0, 20, 30}, {{1, 2}, 31, 0, 50, 60}};
  first.clut[3] = {235, 128, 128};
  first.subpictures = {{0, Control(0, 0, 1, 2)}, {1, Control(5, 5, 5, 5)}};
  first.audio = {{0, kPgcAudioAvailable}, {1, kPgcAudioAvailable | 3 << 8}};
  author::ChainSpec second;
  second.cells = {{{1, 2}, 31, 0, 50, 60}, {{2, 1}, 61, 0, 61, 99}};
  second.clut[3] = {81, 240, 90};
  spec.titleChains = {first, second};
  author::ChainSpec menu;
  menu.cells = {{{1, 1}, 0, 0, 0, 9}};
  menu.subpictures = {{0, Control(0, 0, 0, 0)}};
  menu.audio = {{0, kPgcAudioAvailable}};
  spec.menuUnits = {{"en", {menu}}, {"fr", {menu, second}}};
  spec.titleVobus = {0, 20, 31, 50, 61};
  return spec;
}

class Ifo : public testing::Test {
 protected:
  void Load(const Bytes& image, const std::string& path = kPath) {
    messages.files.Put(path, image);
    ASSERT_EQ(ifo.Load(path), Result::kDone);
  }

  test::MessageCollector messages;
  IfoFile ifo{messages.files, messages.reporter};
  test::DirectTransactionSource transactions{messages.files};
};

TEST_F(Ifo, AccessStopsOneByteShortOfTheLastWholeKib) {
  Load(Bytes(4100, 0x11));
  EXPECT_EQ(ifo.SizeKib(), 4U);
  EXPECT_EQ(ifo.GetInt(4000, 91), 0x11111111U);
  EXPECT_EQ(ifo.GetShort(0, 4093), 0x1111);
  EXPECT_FALSE(ifo.Error());
  EXPECT_EQ(ifo.GetInt(4000, 92), 0U);
  EXPECT_EQ(ifo.GetShort(4094, 0), 0U);
  EXPECT_TRUE(ifo.Error());
  ifo.PutInt(0, 4092, 1);
  ifo.AddInt(SIZE_MAX, 2, 1);
  EXPECT_EQ(messages.LogLines(),
            (std::vector<std::string>{"Out-of-bound address in GetInt 4092 0 4095",
                                      "Out-of-bound address in GetShort 4094 0 4095",
                                      "Out-of-bound address in PutInt 4092 0 4095",
                                      "Out-of-bound address in AddInt 1 0 4095"}));
  EXPECT_EQ(ifo.Image()[4095], 0x11);
  EXPECT_EQ(ifo.Image()[4096], 0);
}

TEST_F(Ifo, LoadTakesANameInAnyCaseAndRefusesWhatCannotBeAnIfo) {
  messages.files.Put("/d/vts_07_0.ifo", BuildIfo(TitleSet()));
  ASSERT_EQ(ifo.Load("/d/VTS_07_0.IFO"), Result::kDone);
  EXPECT_EQ(ifo.TableIndex(), 7);
  EXPECT_FALSE(ifo.IsManager());
  Load(Bytes(2048), "/d/other.ifo");
  EXPECT_EQ(ifo.TableIndex(), 7);
  Load(Bytes(2048), "/d/video_ts.ifo");
  EXPECT_TRUE(ifo.IsManager());
  messages.files.Put("/d/small.ifo", Bytes(1023));
  messages.files.Put("/d/huge.ifo", Bytes((64U << 20) + 1024));
  for (const char* path : {"/d/small.ifo", "/d/missing.ifo", "/d/huge.ifo"}) {
    EXPECT_EQ(ifo.Load(path), Result::kFailed) << path;
    EXPECT_FALSE(ifo.Loaded());
  }
}

TEST_F(Ifo, ATablePointerMustLieInTheFileAndItsEndIsCutTo24Bits) {
  Bytes image(6 * kKib);
  PutInt(image, kIfoTitleChainsOffset, 3);
  PutInt(image, kIfoTitleCellsOffset, 4);
  PutInt(image, kIfoMenuCellsOffset, 2);
  PutInt(image, 4096 + kTableEndOffset, 0xAB0007FF);
  PutInt(image, kIfoTitleVobusOffset, 1);
  PutInt(image, 2048 + kVobuMapEndOffset, 0xFF001000);
  Load(image);
  EXPECT_EQ(ifo.Table(IfoTable::kTitleChains), 6144U);
  EXPECT_EQ(ifo.Table(IfoTable::kTitleCells), std::nullopt);
  EXPECT_EQ(ifo.Table(IfoTable::kTimeMap), std::nullopt);
  EXPECT_EQ(ifo.Table(IfoTable::kFirstPlay), std::nullopt);
  EXPECT_EQ(ifo.GetInt(4096, kTableEndOffset), 0x7FFU);
  EXPECT_EQ(ifo.TableEnd(IfoTable::kMenuCells), 6143U);
  EXPECT_EQ(ifo.TableEnd(IfoTable::kTitleVobus), std::nullopt);
}

TEST_F(Ifo, TheManagersTextDataEndsAtItsOwnField) {
  author::IfoSpec spec;
  spec.manager = true;
  spec.titleChains = {TitleSet().titleChains[0]};
  Bytes image = BuildIfo(spec);
  PutInt(image, kIfoTextDataOffset, 1);
  image.resize(4096);
  PutInt(image, 2048 + kTextDataEndOffset, 0x01000123);
  PutInt(image, 2048 + 10, 0xFFFFFFFF);
  Load(image, "/d/VIDEO_TS.IFO");
  EXPECT_EQ(ifo.TableEnd(IfoTable::kTextData), 2048U + 0x123U);
  EXPECT_EQ(ifo.GetInt(2048, 10), 0xFFFFFFFFU);
  ASSERT_EQ(ifo.ProgramChains(0), 1);
  EXPECT_EQ(ifo.ProgramChain(0, 0), ifo.ProgramChain(0, 1));
  EXPECT_EQ(ifo.TableEnd(IfoTable::kFirstPlay), *ifo.ProgramChain(0, 0) + 235);
  EXPECT_EQ(ifo.AudioStream(0, 1, 0), std::nullopt);
}

TEST_F(Ifo, ChainsAndCellsAreFoundByNumber) {
  Load(BuildIfo(TitleSet()));
  for (const auto& [unit, chains] : {std::pair(0, 2), {1, 1}, {2, 2}, {3, 0}}) {
    EXPECT_EQ(ifo.ProgramChains(unit), chains) << unit;
    EXPECT_FALSE(ifo.ProgramChain(unit, 0) || ifo.ProgramChain(unit, chains + 1)) << unit;
  }
  const auto chain = ifo.ProgramChain(0, 1);
  ASSERT_TRUE(chain);
  for (const int none : {0, 3}) {
    EXPECT_FALSE(ifo.CellPlayback(*chain, none) || ifo.CellPosition(*chain, none)) << none;
  }
}

TEST_F(Ifo, StreamLanguageAndModesFollowTheFirstControlThatNamesTheStream) {
  author::IfoSpec spec = TitleSet();
  Load(BuildIfo(spec));
  const auto stream = [this](int unit, int id) { return ifo.SubpictureStream(unit, 1, id); };
  struct Case {
    int unit, id;
    const char* language;
    int modes;
  };
  for (const Case& each : {Case{0, 0x20, "en", kModeWide}, Case{0, 0x21, "en", kModeLetterbox},
                           Case{0, 0x22, "en", kModePanScan},
                           Case{0, 0x25, "fr", kModeWide | kModeLetterbox | kModePanScan},
                           Case{1, 0x20, "es", kMode4x3}}) {
    EXPECT_EQ(stream(each.unit, each.id).language, each.language) << each.id;
    EXPECT_EQ(stream(each.unit, each.id).modes, each.modes) << each.id;
  }
  EXPECT_FALSE(stream(0, 0x23).found);
  EXPECT_EQ(StreamLabel(3, stream(0, 0x23)), "0x23 (  )");
  EXPECT_EQ(StreamLabel(0, stream(1, 0x20)), "0x20 (es)");

  using Attributes = std::pair<int, int>;
  for (const auto& [video, modes] : {Attributes{0, kMode4x3},
                                     {1 << 2, 0},
                                     {3 << 2 | 1, kModeWide | kModePanScan},
                                     {3 << 2 | 2, kModeWide | kModeLetterbox},
                                     {3 << 2 | 3, kModeWide}}) {
    spec.title.video = static_cast<std::uint8_t>(video);
    Load(BuildIfo(spec));
    EXPECT_EQ(stream(0, 0x25).modes, modes) << video;
  }
}

TEST_F(Ifo, AudioStreamsTellTheirCodingAndStreamId) {
  author::IfoSpec spec = TitleSet();
  const std::vector<std::pair<const char*, int>> codings = {
      {"AC3", 0x83},  {"?", 3}, {"Mpeg1", 0x83}, {"Mpeg2", 0xC3},
      {"LPCM", 0xA3}, {"?", 3}, {"DTS", 0x8B},   {"?", 3}};
  for (std::uint8_t coding = 0; coding < codings.size(); ++coding) {
    spec.title.audio[1].coding = coding;
    Load(BuildIfo(spec));
    const auto audio = ifo.AudioStream(0, 1, 1);
    ASSERT_TRUE(audio);
    EXPECT_EQ(audio->coding, codings[coding].first);
    EXPECT_EQ(audio->streamId, codings[coding].second);
  }
  EXPECT_FALSE(ifo.AudioStream(0, 1, 2));
}

TEST_F(Ifo, TheCellMapListsEveryChainOfACellInTheOrderOfTheWalk) {
  Load(BuildIfo(TitleSet()));
  const CellMap title = BuildCellMap(ifo, "/d/VTS_01_1.VOB");
  ASSERT_EQ(title.cluts.size(), 2U);
  EXPECT_EQ(title.cluts[1].pgc, 2);
  EXPECT_FALSE(title.cluts[1].Modified());
  EXPECT_EQ(title.cells.size(), 3U);
  EXPECT_EQ(title.Find({1, 2})->chains, (std::vector<int>{0, 1}));
  EXPECT_EQ(title.ClutOf({2, 1}), 1);
  EXPECT_EQ(title.ClutOf({3, 1}), std::nullopt);
  EXPECT_EQ(title.Find({1, 2})->subpictures[5].language, "fr");
  EXPECT_EQ(title.Find({1, 1})->audio[1]->coding, "LPCM");
  EXPECT_FALSE(title.Find({2, 1})->audio[0]);

  const CellMap menu = BuildCellMap(ifo, "/d/VTS_01_0.VOB");
  ASSERT_EQ(menu.cluts.size(), 3U);
  EXPECT_EQ(menu.cluts[2].languageUnit, 2);
  EXPECT_EQ(menu.Find({1, 1})->chains, (std::vector<int>{0, 1}));
}

TEST_F(Ifo, WritingLeavesIfoAndBackupEqualAndTouchesOnlyTheColours) {
  const Bytes image = BuildIfo(TitleSet());
  messages.files.Put("/d/vts_01_0.Bup", Bytes(10));
  Load(image);
  YCrCbClut clut = *ifo.Clut(0, 2);
  ifo.Image()[*ifo.ProgramChain(0, 2) + kPgcClutOffset] = 0x77;  // reserved byte
  clut[0] = {1, 2, 3};
  ASSERT_EQ(ifo.SetClut(0, 2, clut), Result::kDone);
  EXPECT_EQ(ifo.SetClut(0, 3, clut), Result::kFailed);
  const auto transaction = transactions.Begin();
  ASSERT_EQ(ifo.Write(*transaction), Result::kDone);
  const Bytes& written = messages.files.Content(kPath);
  EXPECT_EQ(written, messages.files.Content("/d/vts_01_0.Bup"));
  EXPECT_FALSE(messages.files.Exists("/d/VTS_01_0.BUP"));
  Bytes expected = image;
  const std::size_t entry = *ifo.ProgramChain(0, 2) + kPgcClutOffset;
  PutInt(expected, entry, 0x77010203);
  EXPECT_EQ(written, expected);

  ASSERT_EQ(ifo.WriteTo(*transaction, "/copy/my.ifo"), Result::kDone);
  EXPECT_EQ(messages.files.Content("/copy/my.ifo"), expected);
  EXPECT_EQ(messages.files.Content("/copy/my.bup"), expected);
}

TEST_F(Ifo, AReadOnlyIfoIsNotWritten) {
  Load(BuildIfo(TitleSet()));
  ASSERT_EQ(ifo.SetSizeKib(ifo.SizeKib() + 200), Result::kDone);
  EXPECT_EQ(ifo.SetSizeKib(ifo.SizeKib() + 1), Result::kFailed);
  messages.files.SetReadOnly(kPath);
  ASSERT_EQ(ifo.Load(kPath), Result::kDone);
  EXPECT_FALSE(ifo.CanWrite());
  EXPECT_EQ(ifo.Write(*transactions.Begin()), Result::kFailed);
}

TEST_F(Ifo, AChainCutOffByTheFilesEndIsAbsentAndSoAreItsCutOffCells) {
  author::IfoSpec spec;
  spec.manager = true;
  spec.titleChains = {TitleSet().titleChains[0]};
  const Bytes whole = BuildIfo(spec);
  Load(whole, "/d/VIDEO_TS.IFO");
  const std::size_t start = *ifo.ProgramChain(0, 0);
  const Bytes chain(whole.begin() + static_cast<std::ptrdiff_t>(start), whole.end());
  constexpr std::size_t kTwoCells = 2 * kCellPlaybackSize + 2 * kCellPositionSize;
  for (std::size_t size = 1; size < kPgcSize + kTwoCells + 2; ++size) {
    Bytes image(2 * kKib - size);
    PutInt(image, kIfoFirstPlayOffset, static_cast<std::uint32_t>(image.size()));
    image.insert(image.end(), chain.begin(), chain.begin() + static_cast<std::ptrdiff_t>(size));
    Load(image, "/d/VIDEO_TS.IFO");
    const auto found = ifo.ProgramChain(0, 0);
    EXPECT_EQ(found.has_value(), size >= kPgcSize) << size;
    EXPECT_EQ(ifo.Clut(0, 1).has_value(), size >= kPgcSize) << size;
    const bool hasCell = found && ifo.CellPosition(*found, 2);
    EXPECT_EQ(hasCell, size >= kPgcSize + kTwoCells) << size;
  }
}

TEST_F(Ifo, CountsThatLieDoNotKeepItBusy) {
  Bytes image(std::size_t{1} << 20, 0xFF);
  std::fill(image.begin(), image.begin() + kSectorSize, std::uint8_t{0});
  PutInt(image, kIfoTitleSetMenuUnitsOffset, 1);
  // Every language unit and chain pointer is far outside, or the same few bytes.
  Load(image);
  (void)BuildCellMap(ifo, "/d/VTS_01_0.VOB");
  EXPECT_LT(messages.LogLines().size(), 100000U);

  std::fill(image.begin() + kSectorSize, image.end(), std::uint8_t{0});
  for (std::size_t i = kSectorSize; i < image.size(); i += kSearchEntrySize) {
    PutShort(image, i, 0xFFFF);
  }
  Load(image);
  EXPECT_LE(BuildCellMap(ifo, "/d/VTS_01_0.VOB").cluts.size(), 16384U);
}

TEST(Clut, ConvertsToTheTruncatedDigit) {
  EXPECT_EQ(ToRgb(YCrCb{16, 128, 128}), (Rgb{0, 0, 0}));
  EXPECT_EQ(ToRgb(YCrCb{235, 128, 128}), (Rgb{255, 255, 255}));
  EXPECT_EQ(ToRgb(YCrCb{81, 240, 90}), (Rgb{254, 0, 0}));
  EXPECT_EQ(ToRgb(YCrCb{0, 0, 255}), (Rgb{0, 36, 238}));
  EXPECT_EQ(ToYCrCb(Rgb{0, 0, 0}), (YCrCb{16, 128, 128}));
  EXPECT_EQ(ToYCrCb(Rgb{255, 255, 255}), (YCrCb{235, 128, 128}));
  EXPECT_EQ(ToYCrCb(Rgb{255, 0, 0}), (YCrCb{82, 240, 90}));
  EXPECT_EQ(ToYCrCb(Rgb{1, 2, 3}), (YCrCb{18, 127, 129}));
}

}  // namespace
}  // namespace quillomar
