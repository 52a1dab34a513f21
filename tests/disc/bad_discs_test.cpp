// The collection of bad discs: what has broken other programs, each as a file set of its own. Each
// must open with the subpictures that make sense, say what is wrong, and take edits of what it
// shows.

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

#include "author/ifo_builder.h"
#include "author/pack_builder.h"
#include "author/spu_builder.h"
#include "base/format.h"
#include "disc/open_disc.h"
#include "dvd/big_endian.h"
#include "dvd/ifo_layout.h"
#include "spu/colour_edit.h"
#include "spu/parse.h"
#include "support/memory_files.h"

namespace quillomar {
namespace {

using author::SpuDescription;

constexpr const char* kVob = "/disc/VTS_01_1.VOB";
constexpr const char* kIfo = "/disc/VTS_01_0.IFO";
constexpr std::uint64_t kSecond = 90'000;
constexpr const char* kUnparsed =
    "Serious error while parsing commands at LBA 5\nSomething is wrong with this SPU";
constexpr const char* kNoCommands =
    "Inconsistent data in subpic at LBA 5. Offset to commands past end of SPU";
constexpr const char* kScrambled =
    "Some subpicture packs are scrambled.\n"
    "Their subpics can't be read properly and won't be written.";

SpuDescription Plain() {
  return author::Subtitle(author::RandomRows(1, 80, 20, 9), 200, 400, 200);
}

// Where a command's code byte stands.
std::size_t CommandIn(const Bytes& unit, std::uint8_t code) {
  test::MemoryFileSystem files;
  Reporter reporter(files);
  ReportLimit limit(reporter);
  SubpictureUnit parsed = author::MakeUnit(unit);
  EXPECT_FALSE(Failed(ParseControlSequences(parsed, 0, 0, {reporter, limit, VideoStandard::kPal})));
  return static_cast<std::size_t>(FindCommand(parsed, code, 0).value_or(0));
}

Bytes WithFields(int top, int bottom) {
  Bytes unit = author::BuildSpu(Plain());
  const std::size_t at = CommandIn(unit, kSetFieldOffsets);
  PutShort(unit, at + 1, static_cast<std::uint16_t>(top));
  PutShort(unit, at + 3, static_cast<std::uint16_t>(bottom));
  return unit;
}

Bytes WithNext(int next) {
  Bytes unit = author::BuildSpu(Plain());
  const std::size_t first = GetShort(unit, kSpuDcsqtOffset);
  PutShort(unit, first + kSequenceNextOffset, static_cast<std::uint16_t>(next));
  return unit;
}

Bytes WithArea(int sx, int ex, int sy, int ey) {
  Bytes unit = author::BuildSpu(Plain());
  const std::size_t at = CommandIn(unit, kSetDisplayArea) + 1;
  PutInt(unit, at, static_cast<std::uint32_t>(sx << 20 | ex << 8 | sy >> 4));
  PutShort(unit, at + 4, static_cast<std::uint16_t>((sy & 0xF) << 12 | ey));
  return unit;
}

SpuDescription Endless() {
  SpuDescription endless = Plain();
  endless.sequences.resize(1);
  return endless;
}

SpuDescription Brief() {
  SpuDescription brief = Plain();
  brief.sequences.back().delay = 0;
  return brief;
}

Bytes CutTo(std::size_t size, const SpuDescription& description = Plain()) {
  Bytes unit = author::BuildSpu(description);
  unit.resize(size);
  PutShort(unit, kSpuSizeOffset, static_cast<std::uint16_t>(size));
  return unit;
}

// A VOBU with a good subpicture, the one in question, and a good one behind it.
struct Disc {
  std::vector<Bytes> units;
  author::SubpictureSpec packs;
  std::uint64_t restart = 0;  // the clock of the last VOBU; 0: it goes on
  std::uint64_t start = kSecond;
  std::function<void(Bytes& vob, Bytes& ifo)> damage;
};

Disc With(const Bytes& unit) {
  Disc disc;
  disc.units = {unit};
  return disc;
}

struct Trap {
  const char* name;
  Disc disc;
  std::size_t units;       // found, of three
  const char* said;        // first error; empty: none
  bool unwritten = false;  // the one in question is never written
  const char* shown = "";  // in the list of streams or as the colour of the text
};

void PrintTo(const Trap& trap, std::ostream* out) {
  *out << trap.name;
}

Bytes Vob(const Disc& disc) {
  author::VobBuilder vob;
  const Bytes good = author::BuildSpu(Plain());
  std::vector<Bytes> units = {good};
  units.insert(units.end(), disc.units.begin(), disc.units.end());
  units.push_back(good);
  std::uint64_t clock = disc.start;
  for (std::size_t i = 0; i < units.size(); ++i, clock += 2 * kSecond) {
    if (i + 1 == units.size() && disc.restart != 0) clock = disc.restart;
    const auto start = static_cast<std::uint32_t>(clock);
    vob.Add(author::MakeNavPack({clock, vob.Size(), start, start + 180'000}));
    vob.Add(author::MakeVideoPack(clock, {author::SequenceHeader(720, 576, 2),
                                          author::SequenceExtension(), author::PictureHeader(1)}));
    author::SubpictureSpec packs = i == 1 ? disc.packs : author::SubpictureSpec{};
    packs.clock = clock;
    packs.pts = clock + 13'500;
    vob.Add(author::MakeSubpicturePacks(units[i], packs));
  }
  return vob.Image();
}

author::IfoSpec GoodIfo() {
  author::IfoSpec spec;
  author::ChainSpec chain;
  chain.cells = {{{1, 1}, 0, 0, 6, 8}};
  chain.clut[3] = {235, 128, 128};
  chain.subpictures = {{0, kPgcSubpictureAvailable}};
  spec.title.subpictures = {"en"};
  spec.titleChains = {chain};
  spec.titleVobus = {0, 3, 6};
  return spec;
}

Disc WithSpareBytes(int count) {
  SpuDescription large = Plain();
  large.spareBytes = count;
  return With(author::BuildSpu(large));
}

Disc WithPacks(const author::SubpictureSpec& packs) {
  Disc disc = With(author::BuildSpu(Plain()));
  disc.packs = packs;
  return disc;
}

Disc OfStream(int stream, const Bytes& unit) {
  Disc disc = With(unit);
  disc.packs.stream = stream;
  return disc;
}

Disc WithClock(std::uint64_t start, std::uint64_t restart) {
  Disc disc = With(author::BuildSpu(Plain()));
  disc.start = start;
  disc.restart = restart;
  return disc;
}

Disc WithIfo(std::function<void(Bytes& vob, Bytes& ifo)> damage) {
  Disc disc = With(author::BuildSpu(Plain()));
  disc.damage = std::move(damage);
  return disc;
}

// Another IFO than the good one.
Disc WithIfoOf(const std::function<void(author::IfoSpec& spec)>& change) {
  author::IfoSpec spec = GoodIfo();
  change(spec);
  return WithIfo([spec](Bytes&, Bytes& ifo) { ifo = author::BuildIfo(spec); });
}

std::size_t Title(const Bytes& ifo, std::size_t pointer) {
  return GetInt(ifo, pointer) * kSectorSize;
}

std::string ShownText(const View& view) {
  std::string text;
  for (const std::string& stream : view.streams) text += stream + "\n";
  const Rgb colour = view.swatches[kPattern].colour;
  return text + Format("#%02x%02x%02x", colour.r, colour.g, colour.b);
}

class BadDisc : public testing::TestWithParam<Trap> {};

TEST_P(BadDisc, OpensSaysWhatIsWrongAndTakesEdits) {
  const Trap& trap = GetParam();
  const Disc& disc = trap.disc;
  Bytes vob = Vob(disc);
  Bytes ifo = author::BuildIfo(GoodIfo());
  if (disc.damage) disc.damage(vob, ifo);
  test::MemoryFileSystem files;
  files.Put(kVob, vob);
  files.Put(kIfo, ifo);
  files.Put("/disc/VTS_01_0.BUP", author::BuildIfo(GoodIfo()));

  test::OpenEditor opened(files, "/state", {kVob});
  Editor& editor = *opened;
  ASSERT_EQ(editor.Doc().Units().size(), trap.units);
  for (int i = 0; i < editor.CurrentView().count; ++i) editor.GoTo(i);
  const std::string said = opened.errors.empty() ? "" : opened.errors.front();
  EXPECT_EQ(said, trap.said);
  EXPECT_NE(ShownText(editor.CurrentView()).find(trap.shown), std::string::npos)
      << ShownText(editor.CurrentView());
  // Nothing edited, nothing written.
  editor.SaveAll();
  EXPECT_EQ(files.Content(kVob), vob);
  EXPECT_EQ(files.Content(kIfo), ifo);

  editor.GoTo(0);
  editor.SetForced(true);
  editor.MoveVertically(2);
  editor.ApplyToAll(ChoicesOf(editor.Last()));
  editor.SaveAll();
  EXPECT_NE(files.Content(kVob), vob);
  EXPECT_EQ(editor.Doc().Modified(), trap.unwritten);
  test::OpenEditor again(files, "/state", {kVob});
  EXPECT_EQ(again->Doc().Units().size(), trap.units);
  EXPECT_TRUE(IsForced(*again->Doc().Units().front()));
}

const std::vector<Trap>& Traps() {
  static const std::vector<Trap> traps = {
      {"FieldBeforeTheBitmap", With(WithFields(0, 4)), 3, ""},
      {"FieldInTheControlSequences",
       With(WithFields(4, GetShort(author::BuildSpu(Plain()), 2) + 4)), 3, ""},
      {"FieldPastTheEnd", With(WithFields(4, 60'000)), 3, ""},
      {"BothFieldsShareTheirCodes", With(WithFields(4, 4)), 3, ""},
      {"RunsPastTheRow", With(WithArea(200, 240, 400, 419)), 3, ""},
      {"NoWidth", With(WithArea(300, 200, 400, 419)), 3, ""},
      {"OneLine", With(WithArea(200, 279, 400, 400)), 3, ""},
      {"BelowTheFrame", With(WithArea(200, 279, 900, 919)), 3, ""},
      {"SequencesGoBack", With(WithNext(4)), 2, kUnparsed},
      {"SequencesNeverEnd",
       With(WithNext(GetShort(author::BuildSpu(Plain()), kSpuDcsqtOffset) + 1)), 2, kUnparsed},
      {"NextPastTheEnd", With(WithNext(60'000)), 2, kUnparsed},
      {"NoUnitOfAStreamParses", OfStream(2, WithNext(4)), 2, kUnparsed, false, "0x22 (  )"},
      {"CommandCutOff",
       With(CutTo(CommandIn(author::BuildSpu(Endless()), kSetDisplayArea) + 3, Endless())), 3, ""},
      {"FourBytes", With(CutTo(4)), 2, kNoCommands},
      {"NearlyTheLargest", WithSpareBytes(55'000), 3, ""},
      {"TimeInTheFirstPackAlone", WithSpareBytes(9000), 3, ""},
      {"StuffingInTheHeader", WithPacks({.firstHeaderLength = 12}), 3, ""},
      {"ZerosBehindTheData", WithPacks({.paddingPacket = false}), 3, ""},
      {"NoEnd", With(author::BuildSpu(Endless())), 3, ""},
      {"EndsAtItsStart", With(author::BuildSpu(Brief())), 3, ""},
      {"TimeRestarts", WithClock(kSecond, kSecond), 3, ""},
      {"TimeWraps", WithClock((std::uint64_t{1} << 33) - 3 * kSecond, 2 * kSecond), 3, ""},
      {"Scrambled", WithIfo([](Bytes& vob, Bytes&) { vob[5 * kSectorSize + 20] |= 0x30; }), 3,
       kScrambled, true},
      {"CellAddressOfOnes", WithIfo([](Bytes&, Bytes& ifo) {
         const std::size_t cells = Title(ifo, kIfoTitleCellsOffset) + kCellAddressesOffset;
         PutInt(ifo, cells + kCellAddressStartOffset, 0xFFFFFF);
       }),
       3, ""},
      {"CellStartPastItsEnd", WithIfo([](Bytes&, Bytes& ifo) {
         const std::size_t cells = Title(ifo, kIfoTitleCellsOffset) + kCellAddressesOffset;
         PutInt(ifo, cells + kCellAddressStartOffset, 9);
         PutInt(ifo, cells + kCellAddressEndOffset, 3);
       }),
       3, ""},
      {"NoChains",
       WithIfo([](Bytes&, Bytes& ifo) { PutShort(ifo, Title(ifo, kIfoTitleChainsOffset), 0); }), 3,
       ""},
      {"ChainOutsideTheIfo", WithIfo([](Bytes&, Bytes& ifo) {
         PutInt(ifo, Title(ifo, kIfoTitleChainsOffset) + 12, 0x7FFFFFFF);
       }),
       3, ""},
      {"StreamsMappedByScreen", WithIfoOf([](author::IfoSpec& spec) {
         spec.title.video = 0x0C;  // 16:9, for all screens
         spec.titleChains[0].subpictures[0] = kPgcSubpictureAvailable | 0x0101;
       }),
       3, "", false, "0x20 (en) WS\n"},
      {"ChainsNumberedOtherwiseThanTitles", WithIfoOf([](author::IfoSpec& spec) {
         spec.titleChains.insert(spec.titleChains.begin(), author::ChainSpec());
         spec.titleChains[0].cells = {{{2, 1}, 9, 0, 9, 9}};
         spec.titleChains[1].clut.fill({210, 146, 16});
       }),
       3, "", false, "#ffff00"},
      {"RedIsNotBlue", WithIfoOf([](author::IfoSpec& spec) {
         spec.titleChains[0].clut.fill({81, 240, 90});
       }),
       3, "", false, "#fe0000"},
      {"EmptyIfo", WithIfo([](Bytes&, Bytes& ifo) { ifo.clear(); }), 3, ""},
  };
  return traps;
}

INSTANTIATE_TEST_SUITE_P(Collection, BadDisc, testing::ValuesIn(Traps()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace quillomar
