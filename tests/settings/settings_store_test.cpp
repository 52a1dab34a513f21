#include "settings/settings_store.h"

#include <gtest/gtest.h>

#include "settings/preferences.h"
#include "support/memory_files.h"

namespace quillomar {
namespace {

constexpr const char* kPath = "/data/quillomar.ini";
constexpr const char* kHeader = "[quillomar]\n";

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
  void PutFile(const std::string& keys) {
    const std::string text = kHeader + keys;
    files_.Put(kPath, Bytes(text.begin(), text.end()));
  }
  std::string FileKeys() {
    const Bytes& bytes = files_.Content(kPath);
    return std::string(bytes.begin(), bytes.end()).substr(std::string(kHeader).size());
  }
  SettingsStore OpenStore() {
    EXPECT_EQ(files_.CreateFolder("/data"), Result::kDone);
    SettingsStore store(files_, {"/opt/bin/quillomar", "", "/data"});
    store.Open("", false);
    return store;
  }

  test::MemoryFileSystem files_;
};

TEST_F(SettingsStoreTest, FindsItsFileInTheUsersFolderOrOneThatItMakes) {
  const std::string fallback = "c:/WINDOWS/Application Data";
  struct Case {
    ProgramPlace place;
    const char* name;
    bool subfolder;
    std::string path;
  };
  for (const Case& each :
       {Case{{"", "/opt/renamed.bin", "/data"}, "", false, "/data/renamed.ini"},
        Case{{"", "/opt/renamed.bin", "/data"}, "tool", true, "/data/tool/tool.ini"},
        Case{{"quillomar", "", "/missing"}, "", false, fallback + "/quillomar.ini"},
        Case{{"a", "", std::nullopt}, "", true, fallback + "/a/a.ini"}}) {
    test::MemoryFileSystem files;
    EXPECT_EQ(files.CreateFolder("/data"), Result::kDone);
    SettingsStore store(files, each.place);
    store.Open(each.name, each.subfolder);
    EXPECT_EQ(store.Path(), each.path);
    EXPECT_TRUE(files.IsFolder(each.path.substr(0, each.path.rfind('/')))) << each.path;
  }
}

TEST_F(SettingsStoreTest, ReadsNumbers) {
  struct Case {
    const char* text;
    std::int32_t integer;
    float real;
  };
  for (const Case& each :
       {Case{"", 99, 10}, Case{"x=1\n", 99, 10}, Case{"k=\n", 0, 10}, Case{"k=word\n", 0, 3},
        Case{"k=-5 \n", -5, -5}, Case{"k= +7up\n", 7, 7}, Case{"k=0x10\n", 0, 0},
        Case{"k=\"12\"\n", 12, 12}, Case{"k=4294967295\n", -1, 4294967296.0F},
        Case{"k= +1e2 s\n", 1, 100}, Case{"k=-0.125\n", 0, -0.125F}, Case{"k=1e99\n", 1, 3},
        Case{"k=nan\n", 0, 3}}) {
    PutFile(each.text);
    SettingsStore store = OpenStore();
    float value = 3;
    store.BindFloat(value, "k", 10);
    EXPECT_EQ(value, each.real) << each.text;
    EXPECT_EQ(store.ReadInt("K", 99), each.integer) << each.text;
  }
}

TEST_F(SettingsStoreTest, CutsTextsAtWholeCharacters) {
  std::string umlauts;
  for (int i = 0; i < 600; ++i) umlauts += "\xC3\xA4";
  PutFile("k=" + umlauts + "\n");
  EXPECT_EQ(OpenStore().ReadText("k", ""), umlauts.substr(0, 1024));
  EXPECT_EQ(OpenStore().ReadText("missing", "default"), "default");
}

TEST_F(SettingsStoreTest, PlacesWindowsAndKeepsThePlaceOfMinimisedOnes) {
  struct Case {
    const char* text;
    std::optional<WindowRect> placed;
  };
  for (const Case& each :
       {Case{"k=-5 -3 640 480\n", WindowRect{0, 0, 640, 480}},
        Case{"k=7 0 1 1\n", WindowRect{7, 0, 1, 1}}, Case{"k=1 2 0 480\n", {}},
        Case{"k=1 2 640 -480\n", {}}, Case{"k=1 2 640\n", {}}, Case{"k=1,2,3,4\n", {}},
        Case{"k=1 2 3 99999999999\n", {}}, Case{"k=\n", {}}, Case{"", {}}}) {
    PutFile(each.text);
    SettingsStore store = OpenStore();
    FakeWindow window;
    store.BindWindowRect(window, "k", true);
    EXPECT_EQ(window.placed, each.placed) << each.text;
    EXPECT_EQ(window.movedOnly, each.placed.has_value());
    for (const WindowRect& minimised : {WindowRect{-32000, 0, 160, 28}, WindowRect{5, -1, 160, 28},
                                        WindowRect{5, 5, -9, 28}, WindowRect{5, 5, 9, -28}}) {
      window.current = minimised;
      store.SaveAll();
      EXPECT_EQ(FileKeys(), each.text);
    }
    window.current = WindowRect{0, 0, 0, 0};
    store.SaveAll();
    EXPECT_EQ(FileKeys(), "k=0 0 0 0\n");
  }
}

TEST_F(SettingsStoreTest, WritesInOrderOfBindingAndKeepsWhatOthersWroteMeanwhile) {
  SettingsStore store = OpenStore();
  std::string text;
  float range = 0;
  std::int32_t number = 0;
  FakeWindow window;
  store.BindText(text, "Text", "");
  store.BindFloat(range, "Range", 10);
  store.BindWindowRect(window, "Window", false);
  store.BindInt(number, "Colour", 0);
  text = "/a folder/\xC3\xA4";
  range = 0.1F;
  number = 0x323232;
  EXPECT_FALSE(files_.Exists(kPath));
  store.SaveAll();
  const std::string first = "Text=/a folder/\xC3\xA4\nRange=0.100000001490\n";
  EXPECT_EQ(FileKeys(), first + "Colour=3289650\n");
  PutFile("; by hand\n" + first + "Colour=3289650\nNoSize=1\n");
  number = -1;
  text = "unsaved";
  store.SaveOne(3);
  for (const std::size_t none : {4U, 1000000U}) store.SaveOne(none);
  EXPECT_EQ(FileKeys(), "; by hand\n" + first + "Colour=-1\nNoSize=1\n");
}

TEST_F(SettingsStoreTest, OverridesAreReadAndNeverWritten) {
  PutFile("a=1\nb=2\n");
  SettingsStore store = OpenStore();
  for (const auto& [key, value] : {std::pair("A", "3"), {"a", "7"}, {"tool", "x"}, {"Typo", "8"}}) {
    store.Override(key, value);
  }
  std::int32_t overridden = 0;
  std::int32_t other = 0;
  store.BindInt(overridden, "a", 0);
  store.BindInt(other, "b", 0);
  EXPECT_EQ(overridden, 7);
  EXPECT_EQ(store.ReadText("tool", ""), "x");
  EXPECT_EQ(store.UnreadOverrides(), std::vector<std::string>{"Typo"});
  other = 5;
  store.SaveAll();
  store.WriteText("tool", "x");
  EXPECT_EQ(FileKeys(), "a=1\nb=5\n");
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
  main_.current = WindowRect{10, 20, 800, 600};
  scan_.current = WindowRect{1, 2, 3, 4};
  applyAll_.current = WindowRect{5, 6, 7, 8};
  zoom_.current = WindowRect{9, 10, 11, 12};
  Run();
  EXPECT_EQ(FileKeys(), kDefaults);
  EXPECT_FALSE(main_.placed);
  Run();
  EXPECT_EQ(FileKeys(), kDefaults);
  EXPECT_EQ(main_.placed, main_.current);
  EXPECT_FALSE(main_.movedOnly);
  EXPECT_TRUE(scan_.movedOnly && applyAll_.movedOnly && zoom_.movedOnly);
  main_.placed.reset();
  PutFile("NoSize=1\nMainWindowPos=1 2 30 40\n");
  Run();
  EXPECT_FALSE(main_.placed);
  EXPECT_EQ(FileKeys().rfind("NoSize=1\nMainWindowPos=1 2 30 40\nScanWindowPos=", 0), 0U);
}

// Every key holds a value of its own, so that two fields that changed places would show.
TEST_F(AllSettings, ReadEveryKeyIntoItsOwnField) {
  std::string keys;
  int next = 101;
  for (std::string_view rest = kDefaults; !rest.empty(); rest.remove_prefix(rest.find('\n') + 1)) {
    const std::string key(rest.substr(0, rest.find('=') + 1));
    keys +=
        key + std::to_string(next++) + (key == "RetimingSliderRange=" ? ".000000000000\n" : "\n");
  }
  PutFile(keys);
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

TEST(Preferences, ColoursAndBordersOfAPreset) {
  EXPECT_EQ(SplitColour(0x00BBCCDD), (ColourBytes{0xDD, 0xCC, 0xBB}));
  const Preferences preferences;
  for (const auto& [preset, ntsc, height] : {std::tuple(3, true, 89),
                                             {3, false, 106},
                                             {1, true, 48},
                                             {5, true, 62},
                                             {0, true, 0},
                                             {6, true, 0}}) {
    EXPECT_EQ(BorderHeight(preferences, preset, ntsc), height) << preset;
  }
}

TEST(Preferences, BracketPairsAlwaysHoldThree) {
  for (const auto& [square, parentheses, notes, expected] : {std::tuple(1, 1, 1, "[(##)]"),
                                                             {0, 1, 0, "((()))"},
                                                             {1, 0, 1, "[####]"},
                                                             {0, 0, 0, "[[[]]]"}}) {
    Preferences preferences;
    preferences.ocrBracketSquare = square;
    preferences.ocrBracketParentheses = parentheses;
    preferences.ocrBracketNotes = notes;
    const BracketPairs all = BracketPairsOf(preferences);
    EXPECT_EQ(std::string(all.begin(), all.end()), expected);
  }
}

}  // namespace
}  // namespace quillomar
