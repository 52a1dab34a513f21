#include "spu/fade.h"

#include <algorithm>
#include <array>
#include <optional>

#include "dvd/big_endian.h"
#include "spu/colour_edit.h"
#include "spu/edit_attempt.h"
#include "spu/parse.h"
#include "spu/rooms.h"
#include "spu/run_length.h"
#include "spu/sequence_edit.h"

namespace quillomar {
namespace {

constexpr int kMostSteps = 16;
constexpr int kFewestSteps = 4;
constexpr int kShortestMs = 1000;
// The part of the duration that the fade takes.
constexpr int kDurationShare = 8;

struct FadePlan {
  int steps = 0;
  int stepMs = 0;
};

std::array<NewCommand, 2> StepCommands(const PixelTypeValues& alphas) {
  return {NewCommand{kSetContrast, alphas}, NewCommand{kEndOfCommands, {}}};
}

// Makes room for the fade; nothing, with a message, where it would be too short.
std::optional<FadePlan> PlanFade(SubpictureUnit& unit, bool quiet, const SpuContext& context) {
  const auto refuse = [&](const char* text) {
    context.reporter.ReportError(text, quiet ? 1 : 0);
    return std::nullopt;
  };
  const int stepSize = SequenceSize(StepCommands({}));
  const int duration = DelayMs(unit, -1, context.standard);
  const int wanted = std::min(duration / WholeFrameMs(context.standard), kMostSteps);
  if (wanted == 0) return refuse("Duration too short to add fade-in");
  // With less room the fade gets fewer steps.
  static_cast<void>(MakeRoom(unit, wanted * stepSize, context));
  const int fitting = GrowthRoom(unit.state) / stepSize;
  if (fitting < kFewestSteps) return refuse("Not enough room to add fade-in");
  if (RawDelayMs(unit.state.sequences.back().delay) < kShortestMs) {
    return refuse("Subtitle too short to add fade-in (minimum 1s)");
  }
  const int steps = std::min(wanted, fitting);
  return FadePlan{steps, duration / steps / kDurationShare};
}

void WriteContrast(SpuState& state, int commandOffset, const PixelTypeValues& alphas) {
  PutShort(state.bytes, static_cast<std::size_t>(commandOffset) + 1, PackPixelTypeValues(alphas));
}

// Alphas after `step` of `steps`; the background is there from the beginning.
PixelTypeValues AlphasAt(const PixelTypeValues& last, int background, int step, int steps) {
  PixelTypeValues alphas = last;
  for (int type = 0; type < kPixelTypes; ++type) {
    if (type == background) continue;
    auto& alpha = alphas[static_cast<std::size_t>(type)];
    alpha = static_cast<std::uint16_t>(step * alpha / steps);
  }
  return alphas;
}

Result AddSteps(SubpictureUnit& unit, bool quiet, const SpuContext& context) {
  SpuState& state = unit.state;
  if (!state.decoded && Failed(DecodeBitmap(unit, context))) return Result::kFailed;
  const auto plan = PlanFade(unit, quiet, context);
  if (!plan) return Result::kFailed;
  SelectControlSequence(unit, 0);
  const PixelTypeValues last = *unit.currentAlphas;
  const int background = state.statistics.backgroundType;
  WriteContrast(state, *FindCommand(unit, kSetContrast, 0),
                AlphasAt(last, background, 0, plan->steps));
  for (int step = 1; step <= plan->steps; ++step) {
    const auto commands = StepCommands(AlphasAt(last, background, step, plan->steps));
    if (Failed(AddControlSequence(unit, step - 1, step * plan->stepMs, commands, context))) {
      return Result::kFailed;
    }
  }
  return Result::kDone;
}

bool IsStep(const ControlSequence& sequence) {
  return sequence.commands.size() == 2 && sequence.commands[0].code == kSetContrast &&
         sequence.commands[1].code == kEndOfCommands;
}

bool Rises(const PixelTypeValues& from, const PixelTypeValues& to) {
  return std::equal(from.begin(), from.end(), to.begin(), std::less_equal<>());
}

// The number of sequences behind the first that make up a fade; 0 where there is none.
int FadeSteps(const SubpictureUnit& unit) {
  const auto& sequences = unit.state.sequences;
  const auto first = FindCommand(unit, kSetContrast, 0);
  if (!first || sequences.size() < 2) return 0;
  const std::size_t steps = sequences.size() - (IsStep(sequences.back()) ? 1 : 2);
  PixelTypeValues alphas =
      UnpackPixelTypeValues(GetShort(unit.state.bytes, static_cast<std::size_t>(*first) + 1));
  for (std::size_t i = 1; i <= steps; ++i) {
    const ControlSequence& step = sequences[i];
    if (!IsStep(step) || !Rises(alphas, step.commands[0].arguments)) return 0;
    if (i > 1 && step.delay < sequences[i - 1].delay) return 0;
    alphas = step.commands[0].arguments;
  }
  return static_cast<int>(steps);
}

}  // namespace

Result AddFadeIn(SubpictureUnit& unit, bool quiet, const SpuContext& context) {
  const bool startAndStop = unit.state.sequences.size() == 2 && FindCommand(unit, kStop, 1);
  if (!startAndStop || !FindCommand(unit, kSetContrast, 0)) return Result::kFailed;
  return AttemptEdit(unit, [&] { return AddSteps(unit, quiet, context); });
}

bool HasFadeIn(const SubpictureUnit& unit) {
  return FadeSteps(unit) > 0;
}

Result RemoveFadeIn(SubpictureUnit& unit, const SpuContext& context) {
  const int steps = FadeSteps(unit);
  if (steps == 0) return Result::kFailed;
  return AttemptEdit(unit, [&] {
    const auto& last = unit.state.sequences[static_cast<std::size_t>(steps)].commands[0];
    WriteContrast(unit.state, *FindCommand(unit, kSetContrast, 0), last.arguments);
    if (Failed(RemoveControlSequences(unit, 1, steps, context))) return Result::kFailed;
    SelectControlSequence(unit, 0);
    return Result::kDone;
  });
}

}  // namespace quillomar
