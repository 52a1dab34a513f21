// What the controls for place and time show.

#include <algorithm>

#include "editor/view_builder.h"
#include "spu/fade.h"
#include "spu/parse.h"
#include "spu/position.h"

namespace quillomar {
namespace {

// Presets of the same height: the first in this order is shown.
std::optional<int> MatchPreset(int border, const Preferences& preferences, VideoStandard standard) {
  if (border == 0) return 0;
  for (const int preset : {3, 2, 1, 4, 5}) {
    if (BorderHeight(preferences, preset, standard == VideoStandard::kNtsc) == border)
      return preset;
  }
  return std::nullopt;
}

bool HasStart(const SubpictureUnit& unit) {
  const auto starts = [](const SpuCommand& command) {
    return command.code == kStart || command.code == kForcedStart;
  };
  return std::any_of(unit.state.sequences.begin(), unit.state.sequences.end(),
                     [&](const ControlSequence& sequence) {
                       return std::any_of(sequence.commands.begin(), sequence.commands.end(),
                                          starts);
                     });
}

}  // namespace

UnitPointer NextInStream(const UnitList& units, const SubpictureUnit& unit) {
  const auto next = std::find_if(units.begin(), units.end(), [&unit](const UnitPointer& other) {
    return other->stream == unit.stream && other->numberInStream == unit.numberInStream + 1;
  });
  return next == units.end() ? nullptr : *next;
}

PlaceView BuildPlaceView(const SubpictureUnit& unit, const Preferences& preferences,
                         VideoStandard standard) {
  PlaceView place;
  place.up = unit.state.verticalOffset;
  place.right = unit.state.horizontalOffset;
  place.canMoveRight = IsNarrowerThanPicture(unit);
  place.canHaveBorder = !unit.HasButtons();
  place.border = unit.state.border;
  place.borderPreset = MatchPreset(unit.state.border, preferences, standard);
  return place;
}

TimeView BuildTimeView(const Document& document, const SubpictureUnit& unit) {
  constexpr int kLastSequence = -1;
  constexpr std::size_t kStartAndStop = 2;
  TimeView time;
  time.durationMs = DurationMs(unit, document.Standard());
  time.limits = DelayRange(unit, kLastSequence, document.NextPts(unit), document.Standard());
  time.forced = IsForced(unit);
  time.canStart = HasStart(unit);
  time.hasFade = HasFadeIn(unit);
  time.canAddFade = unit.state.sequences.size() == kStartAndStop;
  return time;
}

}  // namespace quillomar
