// Reading and erasing over an arbitrary unit. The first byte says which kinds of text go and
// whether the unit is a menu's, the second is the slant that the engine sees, the third and fourth
// are the free room; the unit follows.
#include <algorithm>

#include "base/utf8.h"
#include "ocr/hearing_impaired.h"
#include "ocr/lesson.h"
#include "ocr/recognised_text.h"
#include "support/block_engine.h"
#include "unit_input.h"

namespace quillomar::fuzz {
namespace {

constexpr std::size_t kHeaderSize = 4;
constexpr std::uint8_t kSpeakers = 1;
constexpr std::uint8_t kRecenter = 2;
constexpr std::uint8_t kAlign = 4;
constexpr std::uint8_t kMenu = 8;
constexpr float kSlantStep = 1 / 256.0F;

Bytes Seed(const std::vector<std::string>& lines, std::uint8_t kinds) {
  return WithUnit({kinds, 0, 1, 0}, author::Subtitle(test::DrawBlocks(lines), 40, 400, 300));
}

// What holds whatever was done.
void Check(const SubpictureUnit& unit, int size) {
  Require(unit.state.TotalSize() + unit.state.freeRoom == size);
  Require(static_cast<std::size_t>(std::abs(unit.charBoxCount)) == unit.charBoxes.size());
  Require(unit.ocrText.size() <= kMaxTextLines);
  for (const std::string& line : unit.ocrText) {
    Require(!line.empty() && FromUtf8(line).size() <= kMaxLineLength);
  }
}

void Correct(SubpictureUnit& unit, const OcrTools& tools) {
  const auto picture = TakeTextPicture(unit, tools);
  const int last = std::min(unit.charBoxCount, 2) - 1;
  if (!picture || last < 0) return;
  const std::string text =
      "\xC3\x89"
      "bc";
  if (MakeLesson(unit, {0, last}, picture->Unpack(), text)) CorrectBoxes(unit, {0, last}, text);
}

void ReadAndErase(SubpictureUnit& unit, ByteSpan header, const SpuContext& context) {
  const std::uint8_t kinds = header[0];
  test::BlockEngine engine(static_cast<float>(header[1]) * kSlantStep);
  int remembered = kNoTextTypeYet;
  const OcrTools tools{engine, {}, remembered, [](const SubpictureUnit&) { return ""; }, context};
  const CutOptions cut{(kinds & kRecenter) != 0, (kinds & kAlign) != 0, false, {1, 1}};
  const int size = unit.state.TotalSize() + unit.state.freeRoom;
  RunOcr(unit, tools);
  Check(unit, size);
  (void)EraseSelection(unit, {1, 3}, cut, tools);
  Check(unit, size);
  const HearingBrackets brackets = {'[', '(', '#', '#', ')', ']'};
  (void)EraseHearingImpaired(unit, {brackets, (kinds & kSpeakers) != 0, cut}, tools);
  Check(unit, size);
  Correct(unit, tools);
  Check(unit, size);
}

}  // namespace

std::vector<Bytes> Seeds() {
  return {Seed({"[A] ab", "- (B)"}, kSpeakers | kRecenter | kAlign),
          Seed({"AB: a", "#a# C"}, kSpeakers | kAlign), Seed({"(a", "B)"}, kRecenter)};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillomar;
  const ByteSpan input(data, size);
  if (size < fuzz::kHeaderSize) return 0;
  fuzz::UnitInput taken;
  if (!taken.Take(input.subspan(fuzz::kHeaderSize), GetShort(input, 2))) return 0;
  if ((input[0] & fuzz::kMenu) != 0) taken.unit.highlight.buttons.emplace_back();
  fuzz::ReadAndErase(taken.unit, input.first(fuzz::kHeaderSize), taken.context);
  return 0;
}
