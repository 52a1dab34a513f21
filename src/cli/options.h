#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dvd/clut.h"
#include "dvd/sector.h"
#include "editor/unit_edits.h"

namespace quillomar {

// Numbers of units, both ends included.
struct NumberRange {
  int first = 0, last = 0;
};

struct CliOptions {
  std::vector<std::string> files;
  std::vector<std::pair<std::string, std::string>> settings;  // --set KEY=VALUE
  bool help = false, version = false, json = false, quiet = false, yes = false, fast = false;

  // Selection.
  std::optional<int> stream;  // 0 to 31
  std::optional<Vcid> vcid;
  std::vector<NumberRange> numbers;  // empty: all
  bool forced = false;

  UnitEdits edits;

  std::string ifoPath;            // of a .sup file's colours
  std::string typesPath;          // render
  std::string outPath;            // exports
  std::string srtPath;            // ocr
  int bits = 24;                  // of a pixel of a BMP: 24 or 4
  double scaleX = 1, scaleY = 1;  // of a PPM
  bool composed = false;          // frame
  bool automaticPalette = false;
  bool keep = false, saved = false;  // recover
  int languageUnit = 0;              // clut
  std::optional<int> pgc;
  std::vector<std::pair<int, Rgb>> entries;
  std::optional<double> delta;  // retime: seconds
  std::string language;         // of the text: two letters, or three as recognisers have them
};

// Reads the words behind the command's name; `accepted` holds the option names the command takes
// besides the common ones. On wrong usage returns nothing and says what is wrong.
[[nodiscard]] std::optional<CliOptions> ParseOptions(const std::vector<std::string>& words,
                                                     const std::vector<std::string>& accepted,
                                                     std::string& error);

// The candidate with the fewest single-letter changes to `word`.
[[nodiscard]] std::string Nearest(const std::string& word,
                                  const std::vector<std::string>& candidates);

// A decimal or 0x number from `low` to `high`; nothing for anything else.
[[nodiscard]] std::optional<int> ParseNumber(const std::string& text, int low, int high);

}  // namespace quillomar
