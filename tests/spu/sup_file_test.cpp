#include "spu/sup_file.h"

#include "dvd/big_endian.h"
#include "support/direct_transaction.h"
#include "support/unit_test.h"

namespace quillomar {
namespace {

using namespace test;

constexpr const char* kPath = "/s/film.sup";
constexpr const char* kCopy = "/s/copy.sup";

Bytes Record(std::uint32_t pts, const Bytes& unit) {
  Bytes record = {'S', 'P', 0, 0, 0, 0, 1, 2, 3, 4};
  PutInt(record, kSupPtsOffset, SwapInt(pts));
  record.insert(record.end(), unit.begin(), unit.end());
  return record;
}

Bytes Join(const std::vector<Bytes>& parts) {
  Bytes whole;
  for (const Bytes& part : parts) whole.insert(whole.end(), part.begin(), part.end());
  return whole;
}

// A unit of four rows whose last one is line `end`.
Bytes UnitEndingAt(int end, int spareBytes = 0, int stopDelay = 90) {
  SpuDescription description =
      Subtitle({"00000000", "01233210", "00111100", "02222220"}, 100, end - 3, stopDelay);
  description.spareBytes = spareBytes;
  return BuildSpu(description);
}

class Sup : public UnitTest {
 protected:
  SupFile Load(const std::string& path = kPath) {
    auto sup = LoadSup(messages_.files, path, messages_.reporter, limit_);
    EXPECT_TRUE(sup);
    return sup ? std::move(*sup) : SupFile();
  }
  SupFile Load(const Bytes& content) {
    messages_.files.Put(kPath, content);
    return Load();
  }
  std::optional<SupPositions> Save(const std::shared_ptr<File>& file, const SupUnits& units) {
    const auto transaction = source.Begin();
    auto positions = SaveSup(file, units, *transaction, context_);
    if (positions && Failed(transaction->Commit())) return std::nullopt;
    return positions;
  }
  std::optional<SupPositions> SaveAs(const std::string& path, const SupUnits& units) {
    return Save(source.Begin()->OpenOrCreate(path), units);
  }
  const Bytes& Content(const std::string& path) { return messages_.files.Content(path); }

  DirectTransactionSource source{messages_.files};
};

TEST_F(Sup, ReadsRecordsAsUnitsWithoutADisc) {
  const Bytes first = UnitEndingAt(470);
  const Bytes second = UnitEndingAt(300, 9);
  const SupFile sup = Load(Join({Record(0x01020304, first), Record(0xFFFFFFFF, second)}));
  ASSERT_EQ(sup.units.size(), 2U);
  EXPECT_TRUE(sup.canWrite);
  const SubpictureUnit& a = *sup.units[0];
  EXPECT_EQ(a.state.bytes, first);
  EXPECT_EQ(a.state.pts, 0x01020304U);
  EXPECT_EQ(a.globalTime, 0x01020304);
  EXPECT_EQ(a.supPosition, 0);
  SubpictureUnit& b = *sup.units[1];
  EXPECT_EQ(b.number, 2);
  EXPECT_EQ(b.numberInStream, 2);
  EXPECT_EQ(b.globalTime, 0xFFFFFFFFLL);
  EXPECT_EQ(b.supPosition, static_cast<std::int64_t>(kSupHeaderSize + first.size()));
  EXPECT_EQ(b.state.freeRoom, 2048);
  EXPECT_EQ(b.state.spareRoom, 0);  // nothing is known of it before the bitmap is decoded
  ASSERT_EQ(DecodeBitmap(b, ntsc_), Result::kDone);
  EXPECT_EQ(b.state.spareRoom, 9);
}

TEST_F(Sup, TheLastLineCoveredChoosesTheStandard) {
  struct Case {
    std::vector<int> ends;
    VideoStandard standard;
    int lastHeight;
  };
  for (const Case& each :
       {Case{{480}, VideoStandard::kNtsc, 3}, Case{{481}, VideoStandard::kPal, 4},
        Case{{575, 480}, VideoStandard::kPal, 4}, Case{{100, 480}, VideoStandard::kNtsc, 3},
        Case{{577}, VideoStandard::kPal, 2}}) {
    Bytes content;
    for (const int end : each.ends) content = Join({content, Record(0, UnitEndingAt(end))});
    const SupFile sup = Load(content);
    ASSERT_EQ(sup.units.size(), each.ends.size());
    EXPECT_EQ(sup.standard, each.standard) << each.ends[0];
    EXPECT_EQ(sup.units.back()->state.height, each.lastHeight) << each.ends[0];
  }
  EXPECT_EQ(Load(Bytes{}).standard, VideoStandard::kNtsc);
}

TEST_F(Sup, LeavesOutRecordsThatDoNotParseAndStopsWhereNoneBegins) {
  const Bytes good = UnitEndingAt(200);
  Bytes unknownCommand = good;
  unknownCommand[GetShort(good, kSpuDcsqtOffset) + 4U] = 0x42;
  Bytes offsetOutside = UnitEndingAt(570);  // does not count for the standard
  PutShort(offsetOutside, kSpuDcsqtOffset, static_cast<std::uint16_t>(offsetOutside.size()));
  struct Case {
    Bytes unit;
    std::size_t loaded;
  };
  // A unit that is shorter than its own size field makes the rest of that field the next record.
  for (const Case& each : {Case{{0, 0}, 1}, Case{{0, 1}, 1}, Case{{0, 2}, 2}, Case{{0, 3, 0}, 2},
                           Case{unknownCommand, 2}, Case{offsetOutside, 2}}) {
    limit_.Reset();
    messages_.errors.clear();
    const SupFile sup = Load(Join({Record(5, good), Record(1, each.unit), Record(6, good)}));
    EXPECT_EQ(messages_.errors.size(), 1U);
    EXPECT_EQ(sup.standard, VideoStandard::kNtsc);
    ASSERT_EQ(sup.units.size(), each.loaded);
    EXPECT_EQ(sup.units.back()->number, static_cast<int>(each.loaded));
    EXPECT_EQ(sup.units.back()->state.pts, each.loaded == 2 ? 6U : 5U);
  }

  for (const Bytes& garbage : {Bytes{0}, Bytes{'S', 'Q'}, Bytes{'P', 'S'}, Bytes{'\n', 'S', 'P'}}) {
    EXPECT_EQ(Load(Join({garbage, Record(5, good)})).units.size(), 0U);
    EXPECT_EQ(Load(Join({Record(4, good), garbage, Record(5, good)})).units.size(), 1U);
  }
}

TEST_F(Sup, SurvivesTruncationAtEveryLength) {
  const Bytes record = Record(1, UnitEndingAt(100));
  const Bytes whole = Join({record, record, record});
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(Load(cut).units.size(), size / record.size()) << size;
  }
  EXPECT_TRUE(messages_.errors.empty());
}

TEST_F(Sup, SavingClosesSpareBytesAndKeepsTheOldTail) {
  // One spare byte stays, more are closed. What is no bitmap of the frame stays whole.
  const std::vector<Bytes> units = {UnitEndingAt(100), UnitEndingAt(200, 1), UnitEndingAt(300, 2),
                                    UnitEndingAt(400, 90), UnitEndingAt(900, 50)};
  const std::vector<std::size_t> removed = {0, 0, 2, 90, 0};
  Bytes content;
  for (const Bytes& unit : units) content = Join({content, Record(7, unit)});
  const SupFile sup = Load(content);
  messages_.files.Put(kCopy, Bytes(content.size(), 7));
  ASSERT_TRUE(SaveAs(kCopy, sup.units));
  EXPECT_EQ(Content(kPath), content);
  const SupFile copy = Load(kCopy);
  ASSERT_EQ(copy.units.size(), units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    EXPECT_EQ(copy.units[i]->state.bytes.size(), units[i].size() - removed[i]) << i;
  }
  // The same unit as one that never had spare bytes.
  EXPECT_EQ(copy.units[3]->state.bytes, UnitEndingAt(400));
  EXPECT_EQ(GetInt(Content(kCopy), kSupPtsOffset + sizeof(std::uint32_t)), 0U);
  EXPECT_EQ(Content(kCopy).size(), content.size());
  EXPECT_EQ(Content(kCopy).back(), 7);
  const int writes = messages_.files.WritesDone();
  ASSERT_TRUE(Save(copy.file, copy.units));
  EXPECT_EQ(messages_.files.WritesDone(), writes);
}

TEST_F(Sup, SavingBackMovesTheRecordsAndClearsTheMarks) {
  const SupFile sup = Load(Join({Record(1, UnitEndingAt(100, 30)), Record(2, UnitEndingAt(200)),
                                 Record(3, UnitEndingAt(300))}));
  SubpictureUnit& second = *sup.units[1];
  const Bytes original = second.state.bytes;
  ASSERT_EQ(SetColour(second, 9, kEmphasis1), Result::kDone);
  ASSERT_EQ(ReloadSup(second, *sup.file, context_), Result::kDone);
  EXPECT_EQ(second.state.bytes, original);
  ASSERT_EQ(SetColour(second, 9, kEmphasis1), Result::kDone);
  const Bytes edited = second.state.bytes;
  const auto positions = Save(sup.file, sup.units);
  ASSERT_TRUE(positions);
  EXPECT_TRUE(second.state.modified);
  ASSERT_EQ(TakeSavedSup(*sup.file, sup.units, *positions, ntsc_), Result::kDone);
  EXPECT_FALSE(second.state.modified);
  EXPECT_EQ(second.state.bytes, edited);
  EXPECT_EQ(second.state.freeRoom, 2048);
  const SupFile again = Load();
  ASSERT_EQ(again.units.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(again.units[i]->supPosition, sup.units[i]->supPosition) << i;
    EXPECT_EQ(again.units[i]->state, sup.units[i]->state) << i;
  }
}

TEST_F(Sup, AFailedWriteKeepsMarksAndPositions) {
  const Bytes content = Join({Record(1, UnitEndingAt(100, 30)), Record(2, UnitEndingAt(200))});
  for (int writes = 0; writes < 2; ++writes) {
    const SupFile sup = Load(content);
    ASSERT_EQ(SetColour(*sup.units[1], 9, kEmphasis1), Result::kDone);
    const std::int64_t position = sup.units[1]->supPosition;
    messages_.errors.clear();
    messages_.files.FailWritesFrom(writes);
    EXPECT_FALSE(Save(sup.file, sup.units));
    messages_.files.FailWritesFrom(-1);
    EXPECT_EQ(messages_.errors.size(), 1U);
    EXPECT_TRUE(sup.units[1]->state.modified);
    EXPECT_EQ(sup.units[1]->supPosition, position);
  }
  // A unit that does not parse any more keeps the whole set from being written.
  const SupFile sup = Load(content);
  sup.units[1]->state.bytes[sup.units[1]->state.dcsqtOffset + 4U] = 0x42;
  EXPECT_FALSE(Save(sup.file, sup.units));
  EXPECT_EQ(Content(kPath), content);
}

TEST_F(Sup, AReadOnlyFileIsLoadedAndAMissingOneIsNot) {
  messages_.files.Put(kPath, Record(1, UnitEndingAt(100)));
  messages_.files.SetReadOnly(kPath);
  const SupFile sup = Load();
  EXPECT_FALSE(sup.canWrite);
  EXPECT_EQ(messages_.errors,
            (std::vector<std::string>{
                "File /s/film.sup is read-only, you won't be able to save your changes!"}));
  EXPECT_FALSE(LoadSup(messages_.files, "/s/none.sup", messages_.reporter, limit_));
  messages_.files.Content(kPath).resize(20);
  const SpuState before = sup.units[0]->state;
  EXPECT_EQ(ReloadSup(*sup.units[0], *sup.file, context_), Result::kFailed);
  EXPECT_EQ(sup.units[0]->state, before);
  EXPECT_EQ(messages_.errors.back(), "Failed to re-load enough data");
}

}  // namespace
}  // namespace quillomar
