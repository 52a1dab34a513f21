#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "editor/document.h"
#include "editor/picture.h"
#include "editor/view_options.h"

namespace quillomar {

// What the sequences of a unit that have begun at a time make of it.
struct UnitMoment {
  int sequence = -1;                       // the last one begun; -1: none yet
  bool on = false;                         // started and not stopped
  std::optional<PixelTypeValues> colours;  // as last set
  std::optional<PixelTypeValues> alphas;
  const ColconTable* bands = nullptr;
};
// `ticks` count from the unit's start.
[[nodiscard]] UnitMoment MomentOf(const SubpictureUnit& unit, std::int64_t ticks);

// The unit as a player draws it then: with its change-colour bands and its highlighted button. The
// unit's bitmap must be decoded.
[[nodiscard]] SubpicturePicture ComposePlayed(const SubpictureUnit& unit, const UnitMoment& moment,
                                              const ClutRecord* clut,
                                              const Preferences& preferences,
                                              const ViewOptions& options);

// The subpicture on the screen while video plays. A unit is on from its start until it stops or the
// next one of its stream begins.
class PlaybackScreen {
 public:
  using Painter = std::function<SubpicturePicture(const UnitPointer&, const UnitMoment&)>;

  // Units of one stream.
  void Load(UnitList units);
  // Nothing drawn so far holds any more.
  void Invalidate() { drawn_.reset(); }
  // Goes to a time in the set, in ticks. Returns whether the picture has changed.
  bool MoveTo(std::int64_t time, const Painter& paint);

  // The unit that began last; null before the first.
  [[nodiscard]] const UnitPointer& Unit() const { return unit_; }
  // Empty while nothing is on.
  [[nodiscard]] const SubpicturePicture& Picture() const { return picture_; }

 private:
  UnitList units_;
  UnitPointer unit_;
  std::optional<int> drawn_;  // the sequence of unit_ that the picture shows
  SubpicturePicture picture_;
};

}  // namespace quillomar
