#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "dvd/sector.h"
#include "dvd/video_standard.h"
#include "editor/picture.h"
#include "editor/screen_mode.h"
#include "editor/text_view.h"
#include "editor/view_options.h"
#include "spu/duration.h"
#include "video/video_frame.h"

namespace quillomar {

// The pixel types' letters with their names, background first.
inline constexpr std::array<const char*, kPixelTypes> kPixelTypeLetters = {
    "'b' (background)", "'p' (pattern)", "'e1' (emphasis 1)", "'e2' (emphasis 2)"};

// One of the four pixel types as the window shows it.
struct Swatch {
  std::string tooltip = "Pixel not used in subpic";
  Rgb colour;
  int alpha = 0;                 // 0 to 15
  std::optional<int> clutEntry;  // nothing for automatic colours
  bool used = false;             // the bitmap has such pixels
};

// Where the current unit stands and what the controls allow.
struct PlaceView {
  int up = 0;                  // lines above the area as found
  int right = 0;               // pixels right of it
  bool canMoveRight = false;   // narrow enough for a horizontal move to mean something
  bool canHaveBorder = false;  // menu units with buttons have none
  int border = 0;              // lines
  // 0: no border, 1 to 5: a preset of that height; nothing: another height.
  std::optional<int> borderPreset;
  bool flush = false;  // borders pull the unit towards them
};

// When it is shown.
struct TimeView {
  int durationMs = -1;                // -1: no end
  std::optional<DelayLimits> limits;  // of the duration; nothing without an end
  bool forced = false;
  bool canStart = false;  // it has a start command to change
  bool hasFade = false;
  bool canAddFade = false;
};

// The video behind the subpicture.
struct VideoView {
  bool available = false;  // the files hold video that can be looked at
  bool shown = false;      // else the background colour stands in its place
  bool atEnd = false;      // the picture is the one nearest to the unit's end
  FramePointer frame;      // null without a picture or without a unit to show over it
  bool settled = true;     // it is the one asked for, which else is on its way
  bool playing = false;
  bool looping = false;
  std::vector<std::string> audio;  // streams that may be heard
  int audioEntry = 0;              // the one chosen
};

// Everything the window shows, as one snapshot that a running job never changes.
struct View {
  bool hasSet = false;
  bool hasUnit = false;
  bool canEdit = false;  // unit and its set may be changed
  VideoStandard standard = VideoStandard::kUnknown;
  int aspect = 0;  // sequence header's code: 2 is 4:3, 3 is 16:9; 0 until the scan has ended
  ScreenMode screenMode = ScreenMode::k4x3;

  int count = 0;   // units in the filtered list
  int index = 0;   // current one, from 0
  int stream = 0;  // chosen entries of the selectors
  int vcid = 0;
  int sequence = 0;
  int buttonCount = 0;                 // of a menu
  std::string title;                   // of the window: path of the first file
  std::vector<std::string> streams;    // entry 0 "All Streams"
  std::vector<std::string> vcids;      // entry 0 "All VCID"
  std::vector<std::string> sequences;  // entry 0 "All DCSQTs"

  SubpicturePicture picture;
  std::string infoRtf;
  std::array<Swatch, kPixelTypes> swatches;
  std::optional<RgbClut> clut;
  int textAlpha = 0;  // transparency slider, 0 to 15
  std::string clutTooltip;
  ViewOptions options;  // as the picture follows them
  PlaceView place;
  TimeView time;
  TextView text;
  VideoView video;
};

}  // namespace quillomar
