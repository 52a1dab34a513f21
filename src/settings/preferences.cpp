#include "settings/preferences.h"

namespace quillomar {
namespace {

constexpr std::size_t kMaxPairs = 3;

struct BorderKeys {
  const char* ntsc;
  const char* pal;
};
constexpr std::array<BorderKeys, kBorderPresets> kBorderKeys = {{
    {"Border4_3S_N", "Border4_3S_P"},
    {"Border4_3LB_N", "Border4_3LB_P"},
    {"Border4_3LBS_N", "Border4_3LBS_P"},
    {"Border1_85_N", "Border1_85_P"},
    {"Border2_39_N", "Border2_39_P"},
}};

// Binds settings one after the other; the record itself says what their defaults are.
class Binder {
 public:
  Binder(SettingsStore& store, Preferences& preferences)
      : store_(store), preferences_(preferences) {}

  void Window(WindowRectTarget* window, const char* key, bool moveOnly) {
    if (window != nullptr) store_.BindWindowRect(*window, key, moveOnly);
  }
  void Text(std::string Preferences::*field, const char* key) {
    store_.BindText(preferences_.*field, key, defaults_.*field);
  }
  void Int(std::int32_t Preferences::*field, const char* key) {
    store_.BindInt(preferences_.*field, key, defaults_.*field);
  }
  void Float(float Preferences::*field, const char* key) {
    store_.BindFloat(preferences_.*field, key, defaults_.*field);
  }
  void Borders() {
    for (std::size_t i = 0; i < kBorderKeys.size(); ++i) {
      const BorderPreset& preset = defaults_.borders[i];
      store_.BindInt(preferences_.borders[i].ntsc, kBorderKeys[i].ntsc, preset.ntsc);
      store_.BindInt(preferences_.borders[i].pal, kBorderKeys[i].pal, preset.pal);
    }
  }

 private:
  SettingsStore& store_;
  Preferences& preferences_;
  const Preferences defaults_;
};

void BindFolders(Binder& bind) {
  bind.Text(&Preferences::lastPpmDir, "LastPPMDir");
  bind.Text(&Preferences::lastSupDir, "LastSUPDir");
  bind.Text(&Preferences::lastSaveSupDir, "LastSaveSUPDir");
  bind.Text(&Preferences::lastVobDir, "LastVOBDir");
  bind.Text(&Preferences::lastSrtDir, "LastSRTDir");
}

void BindDisplay(Binder& bind) {
  bind.Int(&Preferences::forceEvenMoves, "ForceEvenMoves");
  bind.Int(&Preferences::bitmapSaveType, "BitmapSaveType");
  bind.Int(&Preferences::autoForceDisplayVideo, "AutoForceDisplayVideo");
  bind.Int(&Preferences::warnIfOnly4x3, "WarnIfOnly4_3");
  bind.Int(&Preferences::recentFileCount, "NumMRU");
}

void BindOcr(Binder& bind) {
  bind.Int(&Preferences::ocrRecenter, "OCRRecenter");
  bind.Int(&Preferences::ocrAlignBottom, "OCRAlignBottom");
  bind.Int(&Preferences::ocrBracketSquare, "OCRBracketSquare");
  bind.Int(&Preferences::ocrBracketParentheses, "OCRBracketParen");
  bind.Int(&Preferences::ocrBracketNotes, "OCRBracketNotes");
  bind.Int(&Preferences::ocrItalics, "OCRItalics");
  bind.Int(&Preferences::ocrRemoveSpeakers, "OCRRemoveColumns");
  bind.Int(&Preferences::ocrSpaceSelect, "OCRSpaceSelect");
  bind.Int(&Preferences::ocrCaseSensitive, "OCRCaseSensitive");
}

void BindGeneral(Binder& bind) {
  bind.Int(&Preferences::cropBorderX, "CropBackgroundBorderX");
  bind.Int(&Preferences::frameDownSampling, "FrameDownSampling");
  bind.Int(&Preferences::cropBorderY, "CropBackgroundBorderY");
  bind.Int(&Preferences::warnOnBitmapImport, "WarnOnBitmapImport");
  bind.Int(&Preferences::autoDisplayMode, "AutoDisplayMode");
  bind.Int(&Preferences::alertIfClosedCaptions, "AlertIfClosedCaptions");
  bind.Int(&Preferences::askForIfos, "AskForIFOs");
  bind.Float(&Preferences::retimingSliderRange, "RetimingSliderRange");
  bind.Int(&Preferences::editBitmapAs24Bit, "EditBitmapAs24BitBMP");
}

void BindColours(Binder& bind) {
  bind.Int(&Preferences::backgroundColour, "DefaultBackgdColor");
  bind.Int(&Preferences::autoPatternColour, "DefaultAutoPixColor");
  bind.Int(&Preferences::autoBackgroundColour, "DefaultAutoBkgColor");
  bind.Int(&Preferences::autoEmphasis1Colour, "DefaultAutoAA1Color");
  bind.Int(&Preferences::autoEmphasis2Colour, "DefaultAutoAA2Color");
}

}  // namespace

void BindAllSettings(SettingsStore& store, Preferences& preferences,
                     const SettingsWindows& windows) {
  Binder bind(store, preferences);
  if (store.ReadInt("NoSize", 0) == 0) bind.Window(windows.main, "MainWindowPos", false);
  bind.Window(windows.scan, "ScanWindowPos", true);
  BindFolders(bind);
  bind.Borders();
  BindDisplay(bind);
  bind.Window(windows.applyAll, "ApplyAllWindowPos", true);
  bind.Window(windows.zoom, "ZoomWindowPos", true);
  BindOcr(bind);
  BindGeneral(bind);
  BindColours(bind);
  preferences.bitmapToolPath = store.ReadText("BMPEditPath", "");
  preferences.bitmapToolArguments = store.ReadText("BMPEditPathArgs", "");
}

void SaveAllSettings(SettingsStore& store, const Preferences& preferences) {
  store.SaveAll();
  store.WriteText("BMPEditPath", preferences.bitmapToolPath);
  store.WriteText("BMPEditPathArgs", preferences.bitmapToolArguments);
}

ColourBytes SplitColour(std::int32_t colour) {
  const auto bits = static_cast<std::uint32_t>(colour);
  return {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8U),
          static_cast<std::uint8_t>(bits >> 16U)};
}

int BorderHeight(const Preferences& preferences, int preset, bool ntsc) {
  if (preset < 1 || preset > kBorderPresets) return 0;
  const BorderPreset& border = preferences.borders[static_cast<std::size_t>(preset - 1)];
  return ntsc ? border.ntsc : border.pal;
}

BracketPairs BracketPairsOf(const Preferences& preferences) {
  struct Kind {
    std::int32_t on;
    char opening, closing;
  };
  const std::array<Kind, kMaxPairs> kinds = {{{preferences.ocrBracketSquare, '[', ']'},
                                              {preferences.ocrBracketParentheses, '(', ')'},
                                              {preferences.ocrBracketNotes, '#', '#'}}};
  BracketPairs pairs{};
  std::size_t count = 0;
  const auto append = [&](const Kind& kind) {
    pairs[count] = kind.opening;
    pairs[pairs.size() - 1 - count] = kind.closing;
    ++count;
  };
  Kind last = kinds.front();
  for (const Kind& kind : kinds) {
    if (kind.on == 0) continue;
    append(kind);
    last = kind;
  }
  while (count < kMaxPairs) append(last);
  return pairs;
}

}  // namespace quillomar
