// Settings files: whatever stands in one, reading it is safe, writing a value changes that value
// and nothing else, and a second run of the program finds what the first one left.
#include "fuzz_target.h"
#include "settings/ini_file.h"
#include "settings/preferences.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr const char* kPath = "/data/q.ini";

void CheckText(std::string_view input) {
  IniText ini(input);
  Require(ini.Text() == input);
  const auto other = ini.Get("q", "LastVOBDir");
  ini.Set("q", "NoSize", "7");
  Require(ini.Get("Q", "nosize") == "7");
  Require(ini.Get("q", "LastVOBDir") == other);
  const std::string once = ini.Text();
  ini.Set("q", "NoSize", "7");
  Require(ini.Text() == once && IniText(once).Get("q", "NoSize") == "7");
}

void RunProgram(FileSystem& files) {
  SettingsStore store(files, {"q", "", "/data"});
  store.Open("", false);
  Preferences preferences;
  BindAllSettings(store, preferences, {});
  SaveAllSettings(store, preferences);
}

void CheckSettings(ByteSpan input) {
  test::MemoryFileSystem files;
  files.Put(kPath, Bytes(input.begin(), input.end()));
  RunProgram(files);
  const Bytes first = files.Content(kPath);
  RunProgram(files);
  Require(files.Content(kPath) == first);
}

Bytes Seed(std::string_view text) {
  return {text.begin(), text.end()};
}

}  // namespace

std::vector<Bytes> Seeds() {
  return {Seed("; c\r\n[q]\r\nNoSize=1\r\nLastVOBDir=\" a b\"\r\nRetimingSliderRange=1.5\r\n"
               "Border4_3S_N=-3\r\n\r\n[z]\r\nk=v"),
          Seed("\xEF\xBB\xBF[Q]\nMainWindowPos=1 2 3 4\nRetimingSliderRange=1e99\nLastSRTDir=''''\n"
               "[q]\nBMPEditPath=\xC3\xA4\n")};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillomar::fuzz::CheckText({reinterpret_cast<const char*>(data), size});
  // All settings of the program, looked up twice, take a hundred times as long.
  if (size % 8 == 0) quillomar::fuzz::CheckSettings({data, size});
  return 0;
}
