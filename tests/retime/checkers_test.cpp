// The checkers find each kind of damage that they are there for.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "check_retimed/checkers.h"
#include "dvd/big_endian.h"
#include "dvd/ifo_layout.h"
#include "dvd/nav_pack.h"
#include "dvd/pack.h"
#include "support/disc_copy.h"

namespace quillomar::test {
namespace {

using namespace check;

void Overwrite(const std::string& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

bool Mentions(const Faults& faults, const std::string& what) {
  return std::any_of(faults.begin(), faults.end(),
                     [&](const std::string& fault) { return fault.find(what) == 0; });
}

class DamagedDisc : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    copy_ = std::make_unique<DiscCopy>("ntsc");
    untouched_ = std::make_unique<DiscModel>(copy_->Folder());
    vob_ = FileBytes(copy_->Path("VTS_01_1.VOB"));
    ifo_ = FileBytes(copy_->Path("VTS_01_0.IFO"));
  }

  [[nodiscard]] const DiscModel& Untouched() const { return *untouched_; }

  // What the checkers say after some bytes of one VOBU's nav pack have changed.
  template <typename Damage>
  Faults AfterVobDamage(std::uint32_t lba, Damage damage) {
    Bytes damaged = vob_;
    damage(std::span(damaged).subspan(std::size_t{lba} * kSectorSize));
    Overwrite(copy_->Path("VTS_01_1.VOB"), damaged);
    Faults faults = Check();
    Overwrite(copy_->Path("VTS_01_1.VOB"), vob_);
    return faults;
  }

  // The same for the entry of a table at a header pointer, in IFO and backup.
  Faults AfterIfoDamage(std::size_t pointer, std::size_t offset) {
    Bytes damaged = ifo_;
    AddInt(damaged, GetInt(ifo_, pointer) * kSectorSize + offset, 1);
    Overwrite(copy_->Path("VTS_01_0.IFO"), damaged);
    Overwrite(copy_->Path("VTS_01_0.BUP"), damaged);
    return Check();
  }

  Faults Check() {
    const DiscModel now(copy_->Folder());
    Faults faults = CheckNavigation(now, Untouched());
    const Faults mux = CheckMux(now, Untouched());
    faults.insert(faults.end(), mux.begin(), mux.end());
    return faults;
  }

  std::unique_ptr<DiscCopy> copy_;

 private:
  std::unique_ptr<DiscModel> untouched_;
  Bytes vob_, ifo_;
};

TEST_F(DamagedDisc, AnUntouchedOneHasNoFaults) {
  EXPECT_EQ(Check(), Faults());
  EXPECT_GE(PlayWithDvdnav(copy_->Folder()), static_cast<int>(Untouched().navs.size()));
}

TEST_F(DamagedDisc, FaultsOfNavPacksAreFound) {
  const std::uint32_t nav = Untouched().navs[20];
  const auto added = [&](std::size_t field) {
    return AfterVobDamage(nav, [=](std::span<std::uint8_t> sector) { AddInt(sector, field, 1); });
  };
  EXPECT_TRUE(Mentions(added(kNavLbaOffset), "own address"));
  EXPECT_TRUE(Mentions(added(kDsiLbaOffset), "own address"));
  EXPECT_TRUE(Mentions(added(kVobuEndOffset), "end address"));
  EXPECT_TRUE(Mentions(added(kReferenceEndsOffset + 4), "end of a reference frame"));
  EXPECT_TRUE(Mentions(added(kForwardRunOffset + 4 * 18), "search pointer"));
  EXPECT_TRUE(Mentions(added(kPreviousVobuOffset), "search pointer"));
  EXPECT_TRUE(Mentions(added(kSubpictureSyncOffset), "subpicture synchronisation"));
  // Two bytes, of which AddInt reaches the lower ones.
  EXPECT_TRUE(Mentions(added(kAudioSyncOffset - 2), "audio synchronisation"));
}

TEST_F(DamagedDisc, FaultsOfTablesAreFound) {
  EXPECT_TRUE(Mentions(AfterIfoDamage(kIfoTitleVobusOffset, 4 + 4 * 30), "the address map"));
  EXPECT_TRUE(Mentions(AfterIfoDamage(kIfoTitleCellsOffset, 8 + 12 + 4), "cell address start"));
  EXPECT_TRUE(Mentions(AfterIfoDamage(kIfoTitleCellsOffset, 8 + 12 + 8), "cell and its address"));
  if (!Untouched().timeMap.empty()) {
    const Bytes ifo = FileBytes(copy_->Path("VTS_01_0.IFO"));
    const std::size_t table = GetInt(ifo, kIfoTimeMapOffset) * kSectorSize;
    const std::size_t map = GetInt(ifo, table + kTimeMapOffsetsOffset);
    EXPECT_TRUE(Mentions(AfterIfoDamage(kIfoTimeMapOffset, map + 4 + 4 * 3), "time map"));
  }
  Overwrite(copy_->Path("VTS_01_0.BUP"), Bytes(2048, 0));
  EXPECT_TRUE(Mentions(Check(), "the backup"));
}

TEST_F(DamagedDisc, FaultsOfTheMultiplexAreFound) {
  const std::uint32_t video = Untouched().navs[5] + 2;
  const auto changed =
      AfterVobDamage(video, [](std::span<std::uint8_t> sector) { sector[1000] ^= 0x40; });
  EXPECT_TRUE(Mentions(changed, "other bytes at"));
  const auto late = AfterVobDamage(video, [](std::span<std::uint8_t> sector) {
    const auto whole = sector.first<kSectorSize>();
    ClockReference clock = GetClockReference(whole);
    clock.base += 100'000;
    PutClockReference(whole, clock);
  });
  EXPECT_TRUE(Mentions(late, "the clock goes back"));
  const std::uint32_t unit = Untouched().units.front().lbas.front();
  const auto picture =
      AfterVobDamage(unit, [](std::span<std::uint8_t> sector) { sector[200] ^= 1; });
  EXPECT_TRUE(Mentions(picture, "other bytes in a unit"));
  std::filesystem::resize_file(copy_->Path("VTS_01_1.VOB"),
                               std::filesystem::file_size(copy_->Path("VTS_01_1.VOB")) - 2048);
  EXPECT_TRUE(Mentions(Check(), "file sizes"));
}

}  // namespace
}  // namespace quillomar::test
