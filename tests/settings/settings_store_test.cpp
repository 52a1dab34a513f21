#include "settings/settings_store.h"

#include <gtest/gtest.h>

#include "settings/preferences.h"
#include "support/memory_files.h"

namespace quillomar {
namespace {

constexpr const char* kPath = "/data/quillomar.ini";
constexpr const char* kFallback = "c:/WINDOWS/Application Data";

class FakeWindow final : public WindowRectTarget {
 public:
  void Place(const WindowRect& rect, bool moveOnly) override {
    placed = rect;
    movedOnly = moveOnly;
  }
  std::optional<WindowRect> Current() override { return current; }

  std::optional<WindowRect> placed;
  bool movedOnly = false;
  std::optional<WindowRect> current;
};

class SettingsStoreTest : public ::testing::Test {
 protected:
  SettingsStoreTest() { EXPECT_EQ(files_.CreateFolder("/data"), Result::kDone); }

  void PutFile(std::string_view keys) {
    const std::string text = std::string("[quillomar]\n").append(keys);
    files_.Put(kPath, Bytes(text.begin(), text.end()));
  }
  std::string FileText() {
    const Bytes& bytes = files_.Content(kPath);
    return {bytes.begin(), bytes.end()};
  }
  std::string FileKeys() { return FileText().substr(std::string("[quillomar]\n").size()); }
  SettingsStore OpenStore() {
    SettingsStore store(files_, {"/opt/bin/quillomar", "", "/data"});
    store.Open("", false);
    return store;
  }

  test::MemoryFileSystem files_;
  std::int32_t first_ = 0, second_ = 0;
};

TEST_F(SettingsStoreTest, FindsItsFile) {
  SettingsStore store(files_, {"", "/opt/renamed.bin", "/data"});
  store.Open("", false);
  EXPECT_EQ(store.Path(), "/data/renamed.ini");
  EXPECT_EQ(store.Section(), "renamed");
  store.Open("tool", true);
  EXPECT_EQ(store.Path(), "/data/tool/tool.ini");
  EXPECT_TRUE(files_.IsFolder("/data/tool"));
}

TEST_F(SettingsStoreTest, FallsBackWithoutUsableFolder) {
  for (const std::optional<std::string>& appData :
       {std::optional<std::string>(), std::optional<std::string>("/missing")}) {
    test::MemoryFileSystem files;
    SettingsStore store(files, {"quillomar", "", appData});
    store.Open("", false);
    EXPECT_EQ(store.Path(), std::string(kFallback) + "/quillomar.ini");
    EXPECT_TRUE(files.IsFolder(kFallback));
    store.Open("", true);
    EXPECT_EQ(store.Path(), std::string(kFallback) + "/quillomar/quillomar.ini");
  }
}

TEST_F(SettingsStoreTest, ReadsIntegers) {
  const std::vector<std::pair<std::string, std::int32_t>> cases = {
      {"k=48\n", 48},         {"k=-5 \n", -5},   {"k= +7up\n", 7}, {"k=0x10\n", 0},
      {"k=abc\n", 0},         {"k=\n", 0},       {"x=1\n", 99},    {"", 99},
      {"k=4294967295\n", -1}, {"k=\"12\"\n", 12}};
  for (const auto& [text, wanted] : cases) {
    PutFile(text);
    EXPECT_EQ(OpenStore().ReadInt("K", 99), wanted) << text;
  }
}

TEST_F(SettingsStoreTest, ReadsFloats) {
  const std::vector<std::pair<std::string, float>> cases = {
      {"", 10.0F},        {"k=\n", 10.0F},    {"k=2.5\n", 2.5F}, {"k= +1e2 s\n", 100.0F},
      {"k=word\n", 3.0F}, {"k=1e99\n", 3.0F}, {"k=nan\n", 3.0F}, {"k=-0.125\n", -0.125F}};
  for (const auto& [text, wanted] : cases) {
    PutFile(text);
    SettingsStore store = OpenStore();
    float value = 3.0F;
    store.BindFloat(value, "k", 10.0F);
    EXPECT_EQ(value, wanted) << text;
  }
}

TEST_F(SettingsStoreTest, CutsTextsAtWholeCharacters) {
  std::string umlauts;
  for (int i = 0; i < 600; ++i) umlauts += "\xC3\xA4";
  PutFile("k=" + umlauts + "\n");
  EXPECT_EQ(OpenStore().ReadText("k", ""), umlauts.substr(0, 1024));
  EXPECT_EQ(OpenStore().ReadText("missing", "default"), "default");
}

TEST_F(SettingsStoreTest, PlacesWindows) {
  struct Case {
    const char* text;
    std::optional<WindowRect> wanted;
  };
  const std::vector<Case> cases = {{"k=-5 -3 640 480\n", WindowRect{0, 0, 640, 480}},
                                   {"k=7 0 1 1\n", WindowRect{7, 0, 1, 1}},
                                   {"k=1 2 0 480\n", std::nullopt},
                                   {"k=1 2 640 -480\n", std::nullopt},
                                   {"k=1 2 640\n", std::nullopt},
                                   {"k=1,2,3,4\n", std::nullopt},
                                   {"k=1 2 3 99999999999\n", std::nullopt},
                                   {"k=\n", std::nullopt},
                                   {"", std::nullopt}};
  for (const Case& one : cases) {
    PutFile(one.text);
    SettingsStore store = OpenStore();
    FakeWindow window;
    store.BindWindowRect(window, "k", true);
    EXPECT_EQ(window.placed, one.wanted) << one.text;
    EXPECT_EQ(window.movedOnly, one.wanted.has_value());
  }
}

TEST_F(SettingsStoreTest, WritesInOrderOfBinding) {
  SettingsStore store = OpenStore();
  struct Bound {
    std::string text;
    std::int32_t number = 0;
    float range = 0;
  } bound;
  FakeWindow window;
  store.BindText(bound.text, "Text", "");
  store.BindFloat(bound.range, "Range", 10.0F);
  store.BindWindowRect(window, "Window", false);
  store.BindInt(bound.number, "Colour", 0);
  bound = {"/a folder/\xC3\xA4", 0x323232, 0.1F};
  window.current = WindowRect{1, 0, 640, 480};
  EXPECT_FALSE(files_.Exists(kPath));
  store.SaveAll();
  EXPECT_EQ(FileKeys(),
            "Text=/a folder/\xC3\xA4\nRange=0.100000001490\nWindow=1 0 640 480\nColour=3289650\n");
  bound.number = -1;
  bound.text = "unsaved";
  store.SaveOne(3);
  store.SaveOne(4);
  EXPECT_NE(FileKeys().find("Colour=-1\n"), std::string::npos);
  EXPECT_EQ(FileKeys().find("unsaved"), std::string::npos);
}

TEST_F(SettingsStoreTest, MinimisedWindowsKeepTheirStoredPlace) {
  for (const std::optional<WindowRect>& current :
       {std::optional<WindowRect>(), std::optional<WindowRect>({-32000, -32000, 160, 28}),
        std::optional<WindowRect>({5, -1, 160, 28}), std::optional<WindowRect>({5, 5, -9, 28})}) {
    PutFile("k=1 2 3 4\n");
    SettingsStore store = OpenStore();
    FakeWindow window;
    store.BindWindowRect(window, "k", false);
    window.current = current;
    store.SaveAll();
    EXPECT_EQ(FileKeys(), "k=1 2 3 4\n");
  }
}

TEST_F(SettingsStoreTest, KeepsWhatOthersWroteMeanwhile) {
  PutFile("mine=1\n");
  SettingsStore store = OpenStore();
  store.BindInt(first_, "mine", 0);
  first_ = 2;
  PutFile("; by hand\nmine=1\nNoSize=1\n");
  store.SaveAll();
  EXPECT_EQ(FileKeys(), "; by hand\nmine=2\nNoSize=1\n");
}

TEST_F(SettingsStoreTest, OverridesAreReadAndNeverWritten) {
  PutFile("a=1\nb=2\n");
  SettingsStore store = OpenStore();
  store.Override("A", "3");
  store.Override("a", "7");
  store.Override("tool", "x");
  store.Override("Mispelt", "8");
  store.BindInt(first_, "a", 0);
  store.BindInt(second_, "b", 0);
  EXPECT_EQ(first_, 7);
  EXPECT_EQ(store.ReadText("tool", ""), "x");
  EXPECT_EQ(store.UnreadOverrides(), std::vector<std::string>{"Mispelt"});
  second_ = 5;
  store.SaveAll();
  store.WriteText("tool", "x");
  EXPECT_EQ(FileKeys(), "a=1\nb=5\n");
}

TEST_F(SettingsStoreTest, WhatCannotBeWrittenIsSilent) {
  PutFile("a=1\n");
  SettingsStore store = OpenStore();
  store.BindInt(first_, "a", 0);
  first_ = 2;
  files_.FailWritesFrom(0);
  store.SaveAll();
  EXPECT_EQ(FileKeys(), "a=1\n");
}

constexpr const char* kDefaults =
    "MainWindowPos=10 20 800 600\nScanWindowPos=1 2 3 4\n"
    "LastPPMDir=\nLastSUPDir=\nLastSaveSUPDir=\nLastVOBDir=\nLastSRTDir=\n"
    "Border4_3S_N=48\nBorder4_3S_P=58\nBorder4_3LB_N=60\nBorder4_3LB_P=72\n"
    "Border4_3LBS_N=89\nBorder4_3LBS_P=106\nBorder1_85_N=10\nBorder1_85_P=12\n"
    "Border2_39_N=62\nBorder2_39_P=74\n"
    "ForceEvenMoves=0\nBitmapSaveType=0\nAutoForceDisplayVideo=1\nWarnIfOnly4_3=0\nNumMRU=0\n"
    "ApplyAllWindowPos=5 6 7 8\nZoomWindowPos=9 10 11 12\n"
    "OCRRecenter=1\nOCRAlignBottom=1\nOCRBracketSquare=1\nOCRBracketParen=1\nOCRBracketNotes=0\n"
    "OCRItalics=1\nOCRRemoveColumns=0\nOCRSpaceSelect=0\nOCRCaseSensitive=0\n"
    "CropBackgroundBorderX=1\nFrameDownSampling=0\nCropBackgroundBorderY=1\n"
    "WarnOnBitmapImport=1\nAutoDisplayMode=1\nAlertIfClosedCaptions=0\nAskForIFOs=1\n"
    "RetimingSliderRange=10.000000000000\nEditBitmapAs24BitBMP=0\n"
    "DefaultBackgdColor=3289650\nDefaultAutoPixColor=16777215\nDefaultAutoBkgColor=0\n"
    "DefaultAutoAA1Color=0\nDefaultAutoAA2Color=16777215\nBMPEditPath=\nBMPEditPathArgs=\n";

class AllSettings : public SettingsStoreTest {
 protected:
  AllSettings() {
    main_.current = WindowRect{10, 20, 800, 600};
    scan_.current = WindowRect{1, 2, 3, 4};
    applyAll_.current = WindowRect{5, 6, 7, 8};
    zoom_.current = WindowRect{9, 10, 11, 12};
  }
  // One run of the program that changes nothing.
  void Run() {
    SettingsStore store = OpenStore();
    BindAllSettings(store, preferences_, {&main_, &scan_, &applyAll_, &zoom_});
    SaveAllSettings(store, preferences_);
  }
  FakeWindow main_, scan_, applyAll_, zoom_;
  Preferences preferences_;
};

TEST_F(AllSettings, WriteEveryKeyInOrder) {
  Run();
  EXPECT_EQ(FileKeys(), kDefaults);
  EXPECT_FALSE(main_.placed);
  Run();
  EXPECT_EQ(FileKeys(), kDefaults);
  EXPECT_EQ(main_.placed, main_.current);
  EXPECT_FALSE(main_.movedOnly);
  EXPECT_TRUE(scan_.movedOnly && applyAll_.movedOnly && zoom_.movedOnly);
}

// Every key holds a value of its own, so that two fields that changed places would show.
TEST_F(AllSettings, ReadEveryKeyIntoItsOwnField) {
  std::string keys;
  int next = 101;
  for (std::string_view rest = kDefaults; !rest.empty();) {
    const auto equals = rest.find('=');
    const auto end = rest.find('\n');
    keys.append(rest.substr(0, equals)).append("=").append(std::to_string(next++)).append("\n");
    rest.remove_prefix(end + 1);
  }
  const std::string range = "RetimingSliderRange=";
  const auto digits = keys.find(range) + range.size();
  keys.insert(digits + 3, ".000000000000");
  PutFile(keys);
  for (FakeWindow* window : {&main_, &scan_, &applyAll_, &zoom_}) window->current.reset();
  Run();
  EXPECT_EQ(FileKeys(), keys);
  EXPECT_EQ(preferences_.lastPpmDir, "103");
  EXPECT_EQ(preferences_.borders[4].pal, 117);
  EXPECT_EQ(preferences_.ocrRemoveSpeakers, 131);
  EXPECT_EQ(preferences_.cropBorderX, 134);
  EXPECT_EQ(preferences_.cropBorderY, 136);
  EXPECT_EQ(preferences_.retimingSliderRange, 141.0F);
  EXPECT_EQ(preferences_.autoEmphasis2Colour, 147);
  EXPECT_EQ(preferences_.bitmapToolArguments, "149");
}

TEST_F(AllSettings, NoSizeLeavesTheMainWindowAlone) {
  PutFile("NoSize=1\nMainWindowPos=1 2 30 40\n");
  Run();
  EXPECT_FALSE(main_.placed);
  EXPECT_EQ(FileKeys().rfind("NoSize=1\nMainWindowPos=1 2 30 40\nScanWindowPos=", 0), 0U);
}

TEST(Preferences, ColoursHaveRedInTheLowByte) {
  EXPECT_EQ(SplitColour(3289650), (ColourBytes{0x32, 0x32, 0x32}));
  EXPECT_EQ(SplitColour(0x00BBCCDD), (ColourBytes{0xDD, 0xCC, 0xBB}));
}

TEST(Preferences, BorderHeightsFollowTheVideoStandard) {
  const Preferences preferences;
  EXPECT_EQ(BorderHeight(preferences, 3, true), 89);
  EXPECT_EQ(BorderHeight(preferences, 3, false), 106);
  EXPECT_EQ(BorderHeight(preferences, 0, true), 0);
  EXPECT_EQ(BorderHeight(preferences, 6, true), 0);
}

TEST(Preferences, BracketPairsAlwaysHoldThree) {
  const auto pairs = [](int square, int parentheses, int notes) {
    Preferences preferences;
    preferences.ocrBracketSquare = square;
    preferences.ocrBracketParentheses = parentheses;
    preferences.ocrBracketNotes = notes;
    const BracketPairs all = BracketPairsOf(preferences);
    return std::string(all.begin(), all.end());
  };
  EXPECT_EQ(pairs(1, 1, 1), "[(##)]");
  EXPECT_EQ(pairs(0, 1, 0), "((()))");
  EXPECT_EQ(pairs(1, 0, 1), "[####]");
  EXPECT_EQ(pairs(0, 0, 0), "[[[]]]");
}

}  // namespace
}  // namespace quillomar
