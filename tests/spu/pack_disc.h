#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "author/pack_builder.h"
#include "author/spu_builder.h"
#include "spu/gather.h"
#include "spu/write_back.h"
#include "support/direct_transaction.h"
#include "support/message_collector.h"

namespace quillomar::test {

using namespace author;

// Packs in a VOB in memory, opened as a file set: what gathering and write-back work on.
class PackDisc {
 public:
  static constexpr const char* kPath = "/disc/VTS_03_2.VOB";
  static constexpr std::uint32_t kFirstLba = 1;  // of the packs; a nav pack stands before them

  explicit PackDisc(const std::vector<Sector>& packs, int stream = 0) : stream_(stream) {
    VobBuilder vob;
    vob.Add(MakeNavPack({})).Add(packs).Add(MakeEmptyPack(0));
    messages.files.Put(kPath, vob.Image());
    EXPECT_EQ(set.AddFile(kPath), Result::kDone);
    set.Validate();
    set.LayOut();
    count_ = static_cast<std::uint32_t>(packs.size());
  }

  SpuContext Context() { return {messages.reporter, limit, standard}; }
  PackContext Place(std::uint32_t lba) {
    PackContext place;
    place.lba = place.lbaInFile = lba;
    place.vcid = {3, 4};
    place.stream = stream_;
    place.unitNumber = 6;
    place.highlight = &highlight;
    return place;
  }
  Sector ReadPack(std::uint32_t index) {
    Sector sector{};
    EXPECT_EQ(set.ReadSectors(kFirstLba + index, 1, sector), Result::kDone);
    return sector;
  }

  // Hands over all subpicture packs, as a scan does; the answers in order.
  std::vector<GatherResult> Gather(SpuGatherer& gatherer) {
    std::vector<GatherResult> answers;
    for (std::uint32_t i = 0; i < count_; ++i) {
      const Sector pack = ReadPack(i);
      if (ClassifyPack(pack).kind != PackKind::kSubpicture) continue;
      answers.push_back(gatherer.GatherPack(pack, Place(kFirstLba + i), Context()));
    }
    return answers;
  }
  // The one unit of the disc; it must be whole.
  SubpictureUnit GatherOne() {
    SpuGatherer gatherer(set);
    const auto answers = Gather(gatherer);
    EXPECT_FALSE(answers.empty() || answers.back() != GatherResult::kComplete);
    return gatherer.Unit();
  }

  Result Write(SubpictureUnit& unit) {
    const auto transaction = source_.Begin();
    const Result written = WriteBack(unit, set, *transaction, Context());
    EXPECT_EQ(transaction->Commit(), Result::kDone);
    // Reading the unit again would make them known, and drop its edits.
    for (SpuPack& pack : unit.packs) pack.payloadSum.reset();
    return written;
  }
  Result Load(SubpictureUnit& unit) { return Reload(unit, set, Context()); }
  Bytes& Image() { return messages.files.Content(kPath); }

  VideoStandard standard = VideoStandard::kPal;
  MessageCollector messages;
  ReportLimit limit{messages.reporter};
  VobFileSet set{messages.files, messages.reporter};
  Highlight highlight;

 private:
  DirectTransactionSource source_{messages.files};
  int stream_;
  std::uint32_t count_ = 0;
};

// A unit of exactly `size` bytes, at least 200: a small bitmap, spare bytes as asked for, and a
// last sequence whose repeated contrast commands make up the size.
inline Bytes UnitOfSize(std::size_t size, int spareBytes = 0) {
  SpuDescription description =
      Subtitle({"00000000", "01233210", "00111100", "02222220"}, 100, 400, 90);
  description.spareBytes = spareBytes;
  const std::size_t left = size - BuildSpu(description).size();
  const Bytes contrast = ContrastCommand({0, 15, 15, 15});
  auto& commands = description.sequences.back().commands;
  commands.insert(commands.end(), left / contrast.size(), contrast);
  commands.insert(commands.end(), left % contrast.size(), Bytes{kStop});
  return BuildSpu(description);
}

}  // namespace quillomar::test
