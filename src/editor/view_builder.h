#pragma once

#include <optional>

#include "editor/document.h"
#include "editor/selection.h"
#include "editor/view.h"
#include "editor/view_options.h"

namespace quillomar {

// Takes the snapshot that the window shows. Decodes the current unit's bitmap.
[[nodiscard]] View BuildView(Document& document, const Selection& selection,
                             const Preferences& preferences, const ViewOptions& options);

// Program chain whose colours a unit has; null when it is unknown.
[[nodiscard]] const ClutRecord* ClutOfUnit(const Document& document, const SubpictureUnit& unit);

// The unit that follows in the same stream; null for the last one.
[[nodiscard]] UnitPointer NextInStream(const UnitList& units, const SubpictureUnit& unit);

[[nodiscard]] PlaceView BuildPlaceView(const SubpictureUnit& unit, const Preferences& preferences,
                                       VideoStandard standard);
[[nodiscard]] TimeView BuildTimeView(const Document& document, const SubpictureUnit& unit);

// "4:3", "WS", "LB" and "P&S" of a stream's display modes, joined by "+".
[[nodiscard]] std::string DisplayModeNames(std::uint8_t modes);

// True when no stream of the cell has a display mode besides 4:3 and some stream has that one.
[[nodiscard]] bool OnlyFor4x3(const CellEntry& cell);

}  // namespace quillomar
