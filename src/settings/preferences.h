#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "settings/settings_store.h"

namespace quillomar {

// Heights in lines of a letterbox border.
struct BorderPreset {
  std::int32_t ntsc = 0;
  std::int32_t pal = 0;
};

inline constexpr int kBorderPresets = 5;

// Everything the user can set, with its defaults. Switches are integers as the file has them:
// non-zero is on. Colours are 0x00BBGGRR.
struct Preferences {
  // Folders that the file dialogs start in.
  std::string lastPpmDir;      // bitmaps
  std::string lastSupDir;      // .sup files, opening
  std::string lastSaveSupDir;  // .sup files, saving
  std::string lastVobDir;
  std::string lastSrtDir;

  // Presets 1 to 5: "4_3S", "4_3LB", "4_3LBS", "1_85", "2_39".
  std::array<BorderPreset, kBorderPresets> borders = {
      {{48, 58}, {60, 72}, {89, 106}, {10, 12}, {62, 74}}};

  std::int32_t forceEvenMoves = 0;         // a vertical step moves by 2 lines
  std::int32_t bitmapSaveType = 0;         // index of the file type last chosen
  std::int32_t autoForceDisplayVideo = 1;  // show the video behind a subpicture
  std::int32_t warnIfOnly4x3 = 0;
  std::int32_t recentFileCount = 0;

  // Hearing-impaired text removal and OCR.
  std::int32_t ocrRecenter = 1;            // centre a shortened line where it was
  std::int32_t ocrAlignBottom = 1;         // close the gap that a whole line leaves
  std::int32_t ocrBracketSquare = 1;       // erase text in [ ]
  std::int32_t ocrBracketParentheses = 1;  // erase text in ( )
  std::int32_t ocrBracketNotes = 0;        // erase text between # and #
  std::int32_t ocrItalics = 1;
  std::int32_t ocrRemoveSpeakers = 0;  // erase a single word before a colon
  std::int32_t ocrSpaceSelect = 0;     // index, 0 = automatic
  std::int32_t ocrCaseSensitive = 0;   // searches

  std::int32_t cropBorderX = 1;        // pixels left around the text when cropping
  std::int32_t frameDownSampling = 0;  // index of the playback frame rate
  std::int32_t cropBorderY = 1;        // lines
  std::int32_t warnOnBitmapImport = 1;
  std::int32_t autoDisplayMode = 1;  // the 16:9 mode follows the stream
  std::int32_t alertIfClosedCaptions = 0;
  std::int32_t askForIfos = 1;               // after opening a .sup file
  float retimingSliderRange = 10.0F;         // seconds either way
  std::int32_t editBitmapAs24Bit = 0;        // for the external editor; else 4-bit
  std::int32_t backgroundColour = 0x323232;  // where no video is shown

  // CLUT of our own for telling the pixel types apart.
  std::int32_t autoPatternColour = 0xFFFFFF;
  std::int32_t autoBackgroundColour = 0x000000;
  std::int32_t autoEmphasis1Colour = 0x000000;
  std::int32_t autoEmphasis2Colour = 0xFFFFFF;

  // The external bitmap editor.
  std::string bitmapToolPath;
  std::string bitmapToolArguments;
};

// The windows that remember their places; null ones are left out.
struct SettingsWindows {
  WindowRectTarget* main = nullptr;
  WindowRectTarget* scan = nullptr;
  WindowRectTarget* applyAll = nullptr;
  WindowRectTarget* zoom = nullptr;
};

// Reads every setting into the record and the windows and binds them, in the order in which they
// are written. The main window is left alone when the file says `NoSize`. The record must outlive
// the store.
void BindAllSettings(SettingsStore& store, Preferences& preferences,
                     const SettingsWindows& windows);

// Writes everything that is bound, then the external editor's two settings.
void SaveAllSettings(SettingsStore& store, const Preferences& preferences);

struct ColourBytes {
  std::uint8_t red = 0, green = 0, blue = 0;
  friend bool operator==(const ColourBytes&, const ColourBytes&) = default;
};
[[nodiscard]] ColourBytes SplitColour(std::int32_t colour);

// Lines of border preset 1 to 5; 0 for any other number (no border).
[[nodiscard]] int BorderHeight(const Preferences& preferences, int preset, bool ntsc);

// Three opening brackets, then the three closing ones in reverse order. There is always a pair:
// with every kind switched off it is the square one.
using BracketPairs = std::array<char, 6>;
[[nodiscard]] BracketPairs BracketPairsOf(const Preferences& preferences);

}  // namespace quillomar
