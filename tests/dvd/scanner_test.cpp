#include "dvd/scanner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <thread>
#include <tuple>

#include "author/pack_builder.h"
#include "dvd/big_endian.h"
#include "dvd/pack.h"
#include "dvd/scan_progress.h"
#include "support/message_collector.h"

namespace quillomar {
namespace {

using author::MakeNavPack;
using author::MakeSubpicturePacks;
using author::MakeVideoPack;
using author::VobBuilder;

// What a scan handed over, one entry per call.
struct Event {
  enum class Call { kPack, kComplete, kDrop, kStandard } call = Call::kPack;
  int stream = 0;
  std::uint32_t lba = 0, lbaInFile = 0, navLba = 0;
  int fileIndex = 0;
  Vcid vcid{};
  int unitNumber = 0;
  int buttonCount = 0;
  Highlight highlight{};
  std::int64_t timeOffset = 0;
  VideoStandard standard = VideoStandard::kUnknown;
  friend bool operator==(const Event&, const Event&) = default;
};

class RecordingConsumer : public PackConsumer {
 public:
  GatherResult TakePack(SectorView pack, const PackContext& context) override {
    EXPECT_EQ(ClassifyPack(pack).subStreamId, kFirstSubpictureId + context.stream);
    events.push_back({.stream = context.stream,
                      .lba = context.lba,
                      .lbaInFile = context.lbaInFile,
                      .navLba = context.navLba,
                      .fileIndex = context.fileIndex,
                      .vcid = context.vcid,
                      .unitNumber = context.unitNumber,
                      .buttonCount = context.buttonCount,
                      .highlight = *context.highlight});
    return answer(context);
  }
  bool CompleteUnit(int stream, std::int64_t timeOffset) override {
    events.push_back({.call = Event::Call::kComplete, .stream = stream, .timeOffset = timeOffset});
    return usable;
  }
  void StandardFound(VideoStandard standard) override {
    events.push_back({.call = Event::Call::kStandard, .standard = standard});
  }
  void DropUnit(int stream) override {
    events.push_back({.call = Event::Call::kDrop, .stream = stream});
  }

  [[nodiscard]] std::vector<Event> Of(Event::Call call) const {
    std::vector<Event> found;
    for (const Event& event : events) {
      if (event.call == call) found.push_back(event);
    }
    return found;
  }

  std::vector<Event> events;
  std::function<GatherResult(const PackContext&)> answer = [](const PackContext&) {
    return GatherResult::kComplete;
  };
  bool usable = true;
};

class ScannerTest : public testing::Test {
 protected:
  void AddPiece(int piece, const VobBuilder& vob) {
    const std::string path = PathOf(piece);
    messages.files.Put(path, vob.Image());
    ASSERT_EQ(set.AddFile(path), Result::kDone);
  }
  static std::string PathOf(int piece) { return "/VTS_01_" + std::to_string(piece) + ".VOB"; }
  static std::vector<Sector> Subpicture(int stream) {
    return MakeSubpicturePacks(Bytes(100, 0x11), {.stream = stream});
  }
  void Scan() { Scanner(set, consumer, messages.reporter, control).Scan(options, results); }

  test::MessageCollector messages;
  VobFileSet set{messages.files, messages.reporter};
  RecordingConsumer consumer;
  JobControl control;
  ScanOptions options;
  ScanResults results;
};

TEST_F(ScannerTest, HandsOverEverySubpicturePackWithItsPlace) {
  const Highlight highlight{.buttons = {{.x = 10, .y = 20, .width = 30, .height = 40}}};
  VobBuilder first;
  first.Add(MakeNavPack({.vcid = {7, 2}, .highlight = highlight}));
  first.Add(author::MakePrivatePack(0, 0x80)).Add(Subpicture(1)).Add(author::MakePaddingPack(0));
  VobBuilder second;
  second.Add(Subpicture(31)).Add(MakeNavPack({.vcid = {8, 1}})).Add(Subpicture(1));
  AddPiece(1, first);
  AddPiece(2, second);
  Scan();
  const auto packs = consumer.Of(Event::Call::kPack);
  ASSERT_EQ(packs.size(), 3U);
  Event one{.stream = 1, .lba = 2, .lbaInFile = 2, .vcid = {7, 2}, .buttonCount = 1};
  Event two{.stream = 31, .lba = 4, .fileIndex = 1, .vcid = {7, 2}, .unitNumber = 1};
  two.buttonCount = 1;
  Event three{.stream = 1, .lba = 6, .lbaInFile = 2, .navLba = 5, .fileIndex = 1, .vcid = {8, 1}};
  three.unitNumber = 2;
  for (Event* event : {&one, &two, &three}) event->highlight = highlight;
  EXPECT_EQ(packs[0], one);
  EXPECT_EQ(packs[1], two);
  EXPECT_EQ(packs[2], three);
  EXPECT_EQ(results.highestStream, 31);
  EXPECT_EQ(results.unitsFound, 3);
  EXPECT_FALSE(results.interleaved);
  EXPECT_TRUE(set.FullTitleDomain());
  EXPECT_EQ(control.operation, Operation::kDone);
}

TEST_F(ScannerTest, CountsOnlyUnitsThatAreUsable) {
  AddPiece(1, VobBuilder().Add(Subpicture(0)).Add(Subpicture(1)).Add(Subpicture(2)));
  consumer.answer = [](const PackContext& context) {
    return context.stream == 0   ? GatherResult::kNeedMore
           : context.stream == 1 ? GatherResult::kFailed
                                 : GatherResult::kComplete;
  };
  consumer.usable = false;
  Scan();
  EXPECT_EQ(results.unitsFound, 0);
  EXPECT_EQ(consumer.Of(Event::Call::kPack).size(), 3U);
  ASSERT_EQ(consumer.Of(Event::Call::kDrop).size(), 1U);
  EXPECT_EQ(consumer.Of(Event::Call::kDrop)[0].stream, 1);
  ASSERT_EQ(consumer.Of(Event::Call::kComplete).size(), 1U);
  EXPECT_EQ(consumer.Of(Event::Call::kComplete)[0].stream, 2);
}

TEST_F(ScannerTest, TimesRunOnWhereTheClockStartsAgain) {
  VobBuilder vob;
  const std::vector<std::pair<std::uint32_t, std::uint32_t>> times{
      {9000, 54000}, {54000, 99000}, {0, 45000}, {45000, 90000}, {100000, 145000}, {5000, 50000}};
  for (const auto& [start, end] : times) {
    vob.Add(MakeNavPack({.startTime = start, .endTime = end, .category = 1})).Add(Subpicture(0));
  }
  AddPiece(1, vob);
  Scan();
  std::vector<std::int64_t> offsets;
  for (const Event& event : consumer.Of(Event::Call::kComplete))
    offsets.push_back(event.timeOffset);
  const std::vector<std::int64_t> expected{-9000, -9000, 90000, 90000, 90000, 230000};
  EXPECT_EQ(offsets, expected);
  EXPECT_EQ(results.timeRestarts, (std::vector<std::uint32_t>{2, 4, 8, 10}));
  EXPECT_TRUE(results.interleaved);
}

TEST_F(ScannerTest, ListsVobusWithTheirLengthAndFreeSlots) {
  VobBuilder vob;
  const std::uint64_t ticksOf150Packs = 21943;
  vob.Add(author::MakePaddingPack(0));
  const std::uint64_t wrap = 0x1'0000'0000ULL - 7;  // the low 32 bits wrap within the VOBU
  vob.Add(MakeNavPack({.clock = wrap, .startTime = 3, .endTime = 4, .searchFill = 0x5A}));
  vob.Add(std::vector<Sector>(9, author::MakePaddingPack(0)));
  vob.Add(MakeNavPack({.clock = wrap + ticksOf150Packs}));
  vob.Add(std::vector<Sector>(3, author::MakePaddingPack(0)));
  vob.Add(MakeNavPack({.clock = wrap + ticksOf150Packs + 2 * author::kPackTicks}));
  vob.Add(MakeNavPack({.clock = 0}));
  vob.Add(std::vector<Sector>(5, author::MakePaddingPack(0)));
  AddPiece(1, vob);
  Scan();
  std::vector<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>> found;
  for (const VobuEntry& entry : results.vobus) {
    found.emplace_back(entry.startLba, entry.length, entry.freeSlots);
  }
  const decltype(found) expected{{1, 10, 140}, {11, 4, 0}, {15, 1, 0}, {16, 6, 0}};
  EXPECT_EQ(found, expected);
  EXPECT_EQ(results.vobus[0].startTime, 3U);
  EXPECT_EQ(results.vobus[0].endTime, 4U);
  EXPECT_EQ(results.vobus[0].currentLba, 1U);
  EXPECT_EQ(results.vobus[0].searchInfo[270], 0x5A);
  EXPECT_EQ(results.scannedStarts, (std::vector<std::uint32_t>{1, 11, 15, 16, 22}));
  EXPECT_EQ(results.currentStarts, results.scannedStarts);
}

TEST_F(ScannerTest, SettlesTheStandardOnTheFirstSequenceHeader) {
  using author::PictureHeader;
  struct Case {
    std::vector<Bytes> pieces;
    std::tuple<VideoStandard, bool, int, int> found;  // MPEG-1 tells no size
    const char* logged;
  };
  for (const Case& each :
       {Case{{author::SequenceHeader(704, 576, 3), author::SequenceExtension(), PictureHeader(1)},
             {VideoStandard::kPal, true, 704, 576},
             "Found Video Format: PAL"},
        Case{{author::SequenceHeader(352, 240, 1), PictureHeader(1)},
             {VideoStandard::kNtsc, false, 720, 480},
             "Found Video Format: NTSC"}}) {
    VobBuilder vob;
    vob.Add(MakeVideoPack(0, {PictureHeader(3)})).Add(MakeVideoPack(0, each.pieces));
    vob.Add(MakeVideoPack(0, {author::SequenceHeader(352, 288, 2)}));
    set.Reset();
    AddPiece(1, vob);
    consumer.events.clear();
    Scan();
    EXPECT_EQ(std::tuple(results.standard, results.mpeg2, results.width, results.height),
              each.found);
    EXPECT_TRUE(!std::get<1>(each.found) || results.aspect == 3);
    EXPECT_EQ(results.videoLba, 1U);
    ASSERT_EQ(consumer.events.size(), 1U);
    EXPECT_EQ(consumer.events[0].standard, results.standard);
    EXPECT_TRUE(messages.Logged(each.logged));
  }
}

TEST_F(ScannerTest, ReportsClosedCaptionsUpToTheSettlingPack) {
  const std::string text =
      "NOTE: Closed-caption MPEG header found. This video probably has closed-captions";
  const Sector settling = MakeVideoPack(0, {author::SequenceHeader(720, 480, 2)});
  const Sector captions = MakeVideoPack(0, {author::ClosedCaptions()});
  AddPiece(1, VobBuilder().Add(settling).Add(captions));
  options.alertOnClosedCaptions = true;
  Scan();
  EXPECT_FALSE(results.closedCaptions);
  EXPECT_FALSE(messages.Logged(text));
  messages.files.Put(PathOf(1), VobBuilder().Add(captions).Add(settling).Image());
  ASSERT_EQ(set.ReopenAll(), Result::kDone);
  Scan();
  EXPECT_TRUE(results.closedCaptions);
  EXPECT_TRUE(messages.Logged(text));
  EXPECT_EQ(messages.errors, std::vector<std::string>{text});
  options.alertOnClosedCaptions = false;
  Scan();
  EXPECT_EQ(messages.errors.size(), 1U);
}

TEST_F(ScannerTest, AnAbortKeepsWhatWasFoundAndForbidsRetiming) {
  VobBuilder vob;
  vob.Add(MakeNavPack({})).Add(Subpicture(0)).Add(Subpicture(0)).Add(MakeNavPack({}));
  AddPiece(1, vob);
  consumer.answer = [this](const PackContext&) {
    control.abortRequested = true;
    return GatherResult::kComplete;
  };
  Scan();
  EXPECT_EQ(control.operation, Operation::kAborted);
  EXPECT_FALSE(set.FullTitleDomain());
  EXPECT_TRUE(set.CanSave());
  EXPECT_EQ(consumer.Of(Event::Call::kPack).size(), 1U);
  EXPECT_EQ(results.scannedStarts, (std::vector<std::uint32_t>{0, 2}));
  EXPECT_EQ(results.vobus.back().length, 2U);
}

TEST_F(ScannerTest, LogsProgressEvery2000SectorsAndEvery60Listed) {
  AddPiece(1, VobBuilder().Add(std::vector<Sector>(4001, author::MakePaddingPack(0))));
  Scan();
  EXPECT_EQ(messages.LogLines().size(), 3U);
  EXPECT_EQ(control.percent, 99);
  options.lbas.emplace();
  for (std::uint32_t lba = 0; lba < 130; ++lba) options.lbas->push_back(lba);
  Scan();
  const auto lines = messages.LogLines();
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[3].substr(0, lines[3].find('(')), "0.02 MB scanned ");
  EXPECT_EQ(lines[4].substr(0, lines[4].find('(')), "0.14 MB scanned ");
}

TEST_F(ScannerTest, SmoothsTheRateAndTellsTheTimeToGo) {
  ScanProgress progress(messages.reporter, control, 524288);
  progress.Report(1999, 1000, 0);
  progress.Report(3999, 1000, 12);
  EXPECT_EQ(control.percent, 0);
  progress.Report(262144, 128000, 99);
  EXPECT_EQ(control.percent, 50);
  progress.ReportEnd(524288, 256000, 100);
  // Nothing is divided by no time and no sectors.
  ScanProgress(messages.reporter, control, 0).Report(0, 0, 0);
  ScanProgress(messages.reporter, control, 4000).Report(1999, 0, 1);
  const std::vector<std::string> expected{
      "3.90 MB scanned (3.90 MB/s) -- 0 subpics -- 261 secs to go",
      "7.81 MB scanned (4.10 MB/s) -- 12 subpics -- 248 secs to go",
      "512.00 MB scanned (4.09 MB/s) -- 99 subpics -- 125 secs to go",
      "1024.00 MB scanned (4.09 MB/s) -- 100 subpics",
      "0.00 MB scanned (0.00 MB/s) -- 0 subpics -- 0 secs to go",
      "3.90 MB scanned (3904.30 MB/s) -- 1 subpics -- 0 secs to go"};
  EXPECT_EQ(messages.LogLines(), expected);
}

// Sectors of every kind that a scan meets; the third may settle the video standard.
VobBuilder MixedVob(std::mt19937& random, std::size_t sectors, const Sector& third) {
  VobBuilder vob;
  vob.Add(MakeNavPack({.endTime = 9})).Add(author::MakePrivatePack(0, 0x20)).Add(third);
  while (vob.Size() < sectors) {
    const auto kind = random() % 16;
    const auto time = static_cast<std::uint32_t>(random() % 90000);
    if (kind == 0) vob.Add(MakeNavPack({.startTime = time, .endTime = time + 9}));
    const auto subStream = static_cast<std::uint8_t>(0x20 + random() % 32);
    if (kind == 1) vob.Add(author::MakePrivatePack(0, subStream));
    if (kind == 2) vob.Add(std::vector<Sector>(random() % 40, author::MakePaddingPack(0)));
    if (kind == 3) vob.Add(MakeVideoPack(0, {author::PictureHeader(2)}));
    if (kind == 4) vob.Add(author::MakePrivatePack(0, 0x80));
  }
  return vob;
}

// What happens to a scan of two pieces.
struct Disturbance {
  std::size_t sectorsLeft = 9999;  // of the first piece, cut while its second sector is taken
  std::uint32_t badSector = 9999;  // of the first piece
  std::uint32_t abortLba = 9999;
};

// What can be told of it from outside.
struct Outcome {
  std::vector<Event> events;
  std::vector<std::uint32_t> starts;
  int unitsFound = 0;
  int percent = 0;
  Operation operation = Operation::kNone;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome ScanDisturbed(const Sector& third, const ReadAhead& ahead, const Disturbance& disturbance) {
  std::mt19937 random(4711);
  test::MessageCollector messages;
  VobFileSet set(messages.files, messages.reporter);
  for (const char* path : {"/VTS_01_1.VOB", "/VTS_01_2.VOB"}) {
    messages.files.Put(path, MixedVob(random, 2200, third).Image());
    EXPECT_EQ(set.AddFile(path), Result::kDone);
  }
  messages.files.FailReadsOf("/VTS_01_1.VOB", disturbance.badSector * kSectorSize);
  JobControl control;
  RecordingConsumer consumer;
  consumer.answer = [&](const PackContext& context) {
    Bytes& first = messages.files.Content("/VTS_01_1.VOB");
    const std::size_t left = std::min(first.size(), disturbance.sectorsLeft * kSectorSize + 100);
    if (context.lba == 1) first.resize(left);
    if (context.lba >= disturbance.abortLba) control.abortRequested = true;
    // Lets the other reader get ahead.
    if (context.stream % 4 == 0) std::this_thread::sleep_for(std::chrono::microseconds(50));
    return context.stream % 3 == 0 ? GatherResult::kFailed : GatherResult::kComplete;
  };
  ScanResults results;
  Scanner(set, consumer, messages.reporter, control, ahead).Scan({}, results);
  Outcome outcome{
      {}, results.scannedStarts, results.unitsFound, control.percent, control.operation};
  for (const Event& event : consumer.events) {
    if (event.call != Event::Call::kStandard) outcome.events.push_back(event);
  }
  return outcome;
}

TEST(ScannerReadAhead, ChangesNothingButTheTime) {
  // Without a video standard every sector is looked at on one thread.
  const Sector unsettled = author::MakePaddingPack(0);
  const Sector settled = MakeVideoPack(0, {author::SequenceHeader(720, 480, 2)});
  const std::vector<Disturbance> disturbances{{.abortLba = 700},
                                              {.sectorsLeft = 128},
                                              {.sectorsLeft = 1037},
                                              {.badSector = 1500},
                                              {.sectorsLeft = 1037, .abortLba = 2300},
                                              {}};
  for (const Disturbance& disturbance : disturbances) {
    const Outcome plain = ScanDisturbed(unsettled, {}, disturbance);
    ASSERT_GT(plain.events.size(), 20U);
    for (const ReadAhead& ahead : std::vector<ReadAhead>{{1, 1}, {1, 5}, {3, 4}, {17, 3}, {}}) {
      SCOPED_TRACE(testing::Message() << disturbance.sectorsLeft << " sectors, blocks of "
                                      << ahead.blockSectors << ", " << ahead.blocks);
      const Outcome parallel = ScanDisturbed(settled, ahead, disturbance);
      EXPECT_EQ(parallel.events, plain.events);
      EXPECT_TRUE(parallel == plain);
    }
  }
}

}  // namespace
}  // namespace quillomar
