#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dvd/clut.h"
#include "dvd/sector.h"

namespace quillomar {

// One pixel-type assignment such as "pattern=7".
struct TypeValue {
  int which = 0;  // 0 to 3, or as SetAlpha takes it
  int value = 0;  // 0 to 15
};

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

  // Edits.
  std::vector<TypeValue> colours;
  std::vector<TypeValue> alphas;
  std::optional<int> sequence;  // nothing: all
  std::string typesPath;        // render
  std::string outPath;          // frame, text, srt
  bool composed = false;        // frame
  int languageUnit = 0;         // clut
  std::optional<int> pgc;
  std::vector<std::pair<int, Rgb>> entries;
  std::optional<double> delta;  // retime: seconds
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
