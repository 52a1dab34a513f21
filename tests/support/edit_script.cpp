#include "support/edit_script.h"

#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/duration.h"
#include "spu/fade.h"
#include "spu/parse.h"
#include "spu/position.h"
#include "spu/run_length.h"
#include "spu/sequence_edit.h"
#include "spu/visibility.h"

namespace quillomar::test {
namespace {

constexpr std::size_t kStepSize = 4;
// Added to the index of a sequence, so that a byte can name -1 and less.
constexpr int kIndexBias = 2;
// Steps from this code on move the bitmap.
constexpr int kFirstMove = 0xC0;

Result AddRandomSequence(SubpictureUnit& unit, int after, int value, const SpuContext& context) {
  const PixelTypeValues values = UnpackPixelTypeValues(static_cast<std::uint16_t>(value));
  std::vector<NewCommand> commands;
  if ((value & 1) != 0) commands.push_back({kSetColour, values});
  if ((value & 2) != 0) commands.push_back({kSetContrast, values});
  if ((value & 4) != 0) commands.push_back({kStop, {}});
  if ((value & 0xF8) != 0) commands.push_back({kEndOfCommands, {}});
  return AddControlSequence(unit, after, value, commands, context);
}

Result ApplyStep(SubpictureUnit& unit, ByteSpan step, const SpuContext& context) {
  const int index = step[1] - kIndexBias;
  const int value = GetShort(step, 2);
  switch (step[0] < kFirstMove ? step[0] % 11 : 11 + step[0] % 4) {
    case 0:
      return AddRandomSequence(unit, index, value, context);
    case 1:
      return RemoveControlSequence(unit, index, context);
    case 2:
      return AddFadeIn(unit, value % 2 == 0, context);
    case 3:
      return RemoveFadeIn(unit, context);
    case 4:
      return AddStopCommand(unit, context);
    case 5:
      return RemoveStopCommand(unit, context);
    case 6:
      return SetDelay(unit, index, value, context);
    case 7:
      return SetForcedStart(unit, value % 2 == 0);
    case 8:
      return HideUnit(unit);
    case 9:
      unit.allSequences = index % 2 == 0;
      return SetColour(unit, value % 16, index & 3);
    case 11:
      return MoveHorizontal(unit, static_cast<std::int8_t>(step[3]), context);
    case 12:
      return MoveVertical(unit, static_cast<std::int8_t>(step[3]), value >= 0x8000, context);
    case 13:
      return ApplyBorder(unit, step[3], {value >= 0x8000, index % 2 == 0}, context)
                 ? Result::kDone
                 : Result::kFailed;
    case 14:
      return CropBackground(unit, {index, value}, context);
    default:
      unit.allSequences = index % 2 == 0;
      return SetAlpha(unit, value % 16, (index & 7) % 6, context);
  }
}

const char* Broken(const SubpictureUnit& unit, const SpuContext& context) {
  const SpuState& state = unit.state;
  SubpictureUnit reader;
  reader.state.bytes = state.bytes;
  reader.complete = true;
  if (Failed(ParseControlSequences(reader, 0, 0, context))) return "the chain does not parse";
  if (reader.state.sequences != state.sequences) return "other sequences in the bytes";
  if (reader.state.colconTables != state.colconTables) return "other bands in the bytes";
  if (reader.state.dcsqtOffset != state.dcsqtOffset) return "another start of the sequences";
  if (reader.state.topOffset != state.topOffset || reader.state.area != state.area) {
    return "another bitmap in the bytes";
  }
  if (GetShort(state.bytes, kSpuSizeOffset) != state.TotalSize()) return "another size";
  if (state.freeRoom < 0 || state.spareRoom < 0) return "less than no room";
  SelectControlSequence(reader, unit.currentSequence);
  if (reader.currentSequence != unit.currentSequence) return "the selected sequence is gone";
  if (reader.currentColours != unit.currentColours) return "other colours selected";
  if (reader.currentAlphas != unit.currentAlphas) return "other alphas selected";
  return nullptr;
}

const char* BrokenByStep(const SubpictureUnit& before, const SubpictureUnit& unit, Result result) {
  const SpuState& state = unit.state;
  SpuState now = state;
  // A bitmap that runs on into the commands looks otherwise after an earlier step.
  now.statistics.pixelCounts = before.state.statistics.pixelCounts;
  if (Failed(result) && !(now == before.state)) return "a refusal has changed the unit";
  if (Failed(result) && unit.currentSequence != before.currentSequence) {
    return "a refusal has changed the selection";
  }
  if (state.TotalSize() + state.freeRoom != before.state.TotalSize() + before.state.freeRoom) {
    return "room got lost";
  }
  if (state.bytes != before.state.bytes && !state.modified) return "not marked modified";
  return nullptr;
}

}  // namespace

std::string RunEditScript(SubpictureUnit& unit, ByteSpan script, const SpuContext& context) {
  for (std::size_t at = 0; at + kStepSize <= script.size(); at += kStepSize) {
    const ByteSpan step = script.subspan(at, kStepSize);
    // Decoding is no change.
    if (step[0] >= kFirstMove) (void)NeedBitmap(unit, context);
    const SubpictureUnit before = unit;
    const Result result = ApplyStep(unit, step, context);
    const char* broken = BrokenByStep(before, unit, result);
    if (broken == nullptr) broken = Broken(unit, context);
    if (broken != nullptr) return "step " + std::to_string(at / kStepSize) + ": " + broken;
  }
  return {};
}

}  // namespace quillomar::test
