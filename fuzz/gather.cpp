// Gathering of arbitrary packs, then an edit, write-back and re-load of each unit. The first byte
// is the edit: bits 0 to 3 a colour, bits 4 to 6 by how many bytes the control sequences move, bit
// 7 a new time. With bits 4 to 6 all set, bits 0 to 3 are the number of sequences that are added;
// with 5 and 6 alone something else changes the unit's packs after they were gathered.
#include "spu/gather.h"

#include <algorithm>

#include "author/pack_builder.h"
#include "author/spu_builder.h"
#include "fuzz_target.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"
#include "spu/rooms.h"
#include "spu/run_length.h"
#include "spu/sequence_edit.h"
#include "spu/write_back.h"
#include "support/direct_transaction.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr const char* kPath = "/VTS_01_1.VOB";
constexpr int kSpoil = 6;
constexpr int kGrow = 7;
constexpr int kGrowth = 11;

class Disc {
 public:
  Disc(ByteSpan image, std::uint8_t edit) : edit_(edit) {
    files_.Put(kPath, Bytes(image.begin(), image.end()));
    Require(!Failed(set_.AddFile(kPath)));
    set_.LayOut();
  }

  void Run() {
    for (std::uint32_t lba = 0; lba < set_.TotalSectors(); ++lba) {
      Sector pack{};
      Require(!Failed(set_.ReadSectors(lba, 1, pack)));
      PackContext place;
      place.lba = place.lbaInFile = lba;
      place.highlight = &highlight_;
      place.buttonCount = pack[0];
      const PackInfo info = ClassifyPack(pack);
      if (info.kind != PackKind::kSubpicture && info.kind != PackKind::kPadding) continue;
      place.stream = info.subStreamId % kSubpictureStreams;
      if (gatherer_.GatherPack(pack, place, context_) != GatherResult::kComplete) continue;
      CheckUnit(gatherer_.Unit());
      Save(gatherer_.Unit());
    }
  }

 private:
  static void CheckUnit(const SubpictureUnit& unit) {
    const SpuState& state = unit.state;
    Require(unit.complete && !unit.packs.empty() && unit.packs.size() <= kMaxSpuPacks);
    Require(!state.bytes.empty() && state.TotalSize() <= kMaxSpuSize);
    Require(state.dcsqtOffset < state.bytes.size() && !state.sequences.empty());
    Require(state.freeRoom >= 0);
    Require(unit.highlight.buttons.size() <= kMaxButtons);
  }

  void Edit(SubpictureUnit& unit) {
    static_cast<void>(SetColour(unit, edit_ & 0xF, kPattern));
    static_cast<void>(DecodeBitmap(unit, context_));
    if (Kind() == kGrow) {
      Grow(unit);
    } else {
      static_cast<void>(ShiftControlSequences(unit, Kind() - 3));
    }
    if ((edit_ & 0x80) != 0) unit.state.pts += 3003;
  }

  [[nodiscard]] int Kind() const { return edit_ >> 4 & 7; }

  // Adds sequences of kGrowth bytes.
  void Grow(SubpictureUnit& unit) {
    const std::vector<NewCommand> commands = {
        {kSetColour, {1, 2, 3, 4}}, {kSetContrast, {1, 2, 3, 4}}, {kEndOfCommands, {}}};
    for (int i = 0; i < (edit_ & 0xF); ++i) {
      static_cast<void>(AddControlSequence(unit, 0, i, commands, context_));
    }
  }

  Result Write(SubpictureUnit& unit) {
    const auto transaction = source_.Begin();
    return WriteBack(unit, set_, *transaction, context_);
  }

  bool Parses(SubpictureUnit unit) {
    return !Failed(ParseControlSequences(unit, 0, unit.state.dcsqtOffset, context_));
  }

  void RefuseSpoilt(SubpictureUnit& unit) {
    std::uint8_t& last = files_.Content(kPath).at((unit.packs.back().lba + 1) * kSectorSize - 1);
    last ^= 1;
    const int writes = files_.WritesDone();
    Require(Failed(Write(unit)) && files_.WritesDone() == writes);
    last ^= 1;
  }

  // Saving a sound unit succeeds, loads again, and has nothing more to write.
  void Save(SubpictureUnit unit) {
    Edit(unit);
    if (Kind() == kSpoil) {
      RefuseSpoilt(unit);
      return;
    }
    const bool hasStream = std::all_of(unit.packs.begin(), unit.packs.end(), [&](const auto& each) {
      Sector pack{};
      Require(!Failed(set_.ReadSectors(each.lba, 1, pack)));
      const PackInfo info = ClassifyPack(pack);
      return info.kind == PackKind::kPadding || info.subStreamId == unit.SubStreamId();
    });
    const bool written = !Failed(Write(unit));
    Require(written || unit.scrambled || !hasStream || unit.packs.size() > 1 || !Parses(unit));
    if (!written) return;
    const std::uint32_t pts = unit.state.pts;
    Require(!Failed(Reload(unit, set_, context_)));
    CheckUnit(unit);
    Require(unit.state.pts == pts && !unit.state.modified);
    const int writes = files_.WritesDone();
    Require(!Failed(Write(unit)) && files_.WritesDone() == writes);
  }

  std::uint8_t edit_;
  test::MemoryFileSystem files_;
  Reporter reporter_{files_};
  ReportLimit limit_{reporter_};
  VobFileSet set_{files_, reporter_};
  SpuContext context_{reporter_, limit_, VideoStandard::kPal};
  SpuGatherer gatherer_{set_};
  test::DirectTransactionSource source_{files_};
  Highlight highlight_;
};

author::SpuDescription Describe(int width, int height) {
  author::SpuDescription description =
      author::Subtitle(author::RandomRows(1, width, height, 9), 100, 100, 90);
  description.spareBytes = 4;
  return description;
}

Bytes Seed(std::uint8_t edit, const Bytes& unit, const author::SubpictureSpec& spec) {
  author::VobBuilder vob;
  vob.Add(author::MakeSubpicturePacks(unit, spec));
  return WithFirst(edit, vob.Image());
}

// The odd rows' codes stand before those of the even rows.
Bytes WithFieldsSwapped(const author::SpuDescription& description) {
  Bytes unit = author::BuildSpu(description);
  const Bytes top = author::BuildField(description.rows, 0);
  const Bytes bottom = author::BuildField(description.rows, 1);
  const auto begin = unit.begin() + kSpuHeaderSize;
  std::copy(top.begin(), top.end(), std::copy(bottom.begin(), bottom.end(), begin));
  const auto first = static_cast<int>(kSpuHeaderSize);
  const Bytes was = author::FieldOffsetsCommand(first, first + static_cast<int>(top.size()));
  const Bytes is = author::FieldOffsetsCommand(first + static_cast<int>(bottom.size()), first);
  const auto command = std::search(unit.begin(), unit.end(), was.begin(), was.end());
  Require(command != unit.end());
  std::copy(is.begin(), is.end(), command);
  return unit;
}

// A unit in two packs, a padding pack in their midst, that grows until its first pack is full but
// for a few bytes, or by one sequence more.
Bytes GrowingSeed(int more) {
  const int room = PackRoom(5);
  Bytes unit;
  int left = 0;
  for (int height = 200; unit.empty() || left < 0 || left % kGrowth == 0 || left % kGrowth > 5;
       --height) {
    auto description = Describe(90, height);
    description.spareBytes = 0;
    unit = author::BuildSpu(description);
    left = room - static_cast<int>(unit.size());
  }
  auto packs = author::MakeSubpicturePacks(unit, {.packs = 2, .paddingPacket = false});
  packs.insert(packs.begin() + 1, author::MakePaddingPack(0));
  author::VobBuilder vob;
  vob.Add(packs);
  return WithFirst(static_cast<std::uint8_t>(kGrow << 4 | (left / kGrowth + more)), vob.Image());
}

}  // namespace

std::vector<Bytes> Seeds() {
  const Bytes small = author::BuildSpu(Describe(20, 8));
  const Bytes inThree =
      Seed(0x72, author::BuildSpu(Describe(30, 20)), {.packs = 3, .paddingPacket = false});
  const Bytes whole = Seed(0, small, {});
  // Two of its three packs, then another unit.
  Bytes incomplete(inThree.begin(), inThree.begin() + 1 + 2 * kSectorSize);
  incomplete.insert(incomplete.end(), whole.begin() + 1, whole.end());
  return {Seed(0x15, small, {}),
          Seed(0xE9, author::BuildSpu(Describe(90, 60)), {.firstHeaderLength = 8}),
          inThree,
          incomplete,
          Seed(0x13, WithFieldsSwapped(Describe(24, 12)), {}),
          GrowingSeed(0),
          GrowingSeed(1),
          Seed(0x61, small, {})};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillomar;
  if (size > 0) fuzz::Disc(ByteSpan(data + 1, size - 1), data[0]).Run();
  return 0;
}
