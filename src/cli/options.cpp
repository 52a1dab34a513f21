#include "cli/options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <numeric>

#include "base/format.h"
#include "dvd/pack.h"
#include "ocr/languages.h"
#include "spu/colour_edit.h"
#include "spu/subpicture_unit.h"

namespace quillomar {
namespace {

constexpr int kMaxNibble = 15;
constexpr int kMaxUnitNumber = 100'000'000;

using Setter = std::function<bool(CliOptions&, const std::string&)>;

struct OptionRule {
  bool takesValue;
  Setter set;
};

std::optional<std::pair<std::string, std::string>> SplitAt(const std::string& text, char mark) {
  const auto cut = text.find(mark);
  if (cut == std::string::npos) return std::nullopt;
  return std::pair(text.substr(0, cut), text.substr(cut + 1));
}

bool SetStream(CliOptions& options, const std::string& text) {
  const auto id =
      ParseNumber(text, kFirstSubpictureId, kFirstSubpictureId + kSubpictureStreams - 1);
  if (id) options.stream = *id - kFirstSubpictureId;
  return id.has_value();
}

bool SetVcid(CliOptions& options, const std::string& text) {
  const auto parts = SplitAt(text, '/');
  if (!parts) return false;
  const auto vob = ParseNumber(parts->first, 0, 0xFFFF);
  const auto cell = ParseNumber(parts->second, 0, 0xFF);
  if (!vob || !cell) return false;
  options.vcid = Vcid{static_cast<std::uint16_t>(*vob), static_cast<std::uint8_t>(*cell)};
  return true;
}

bool AddRange(CliOptions& options, const std::string& text) {
  const auto parts = SplitAt(text, '-').value_or(std::pair(text, text));
  const auto first = ParseNumber(parts.first, 1, kMaxUnitNumber);
  const auto last = ParseNumber(parts.second, 1, kMaxUnitNumber);
  if (!first || !last || *last < *first) return false;
  options.numbers.push_back({*first, *last});
  return true;
}

bool SetNumbers(CliOptions& options, const std::string& text) {
  std::size_t start = 0;
  while (true) {
    const auto comma = text.find(',', start);
    if (!AddRange(options, text.substr(start, comma - start))) return false;
    if (comma == std::string::npos) return true;
    start = comma + 1;
  }
}

std::optional<TypeValue> ParseTypeValue(const std::string& text) {
  static const std::map<std::string, int> kTypes = {
      {"background", kBackground},      {"pattern", kPattern},
      {"emphasis1", kEmphasis1},        {"emphasis2", kEmphasis2},
      {"text", kAlphaAllButBackground}, {"all", kAlphaAll}};
  const auto parts = SplitAt(text, '=');
  if (!parts || kTypes.count(parts->first) == 0) return std::nullopt;
  const auto value = ParseNumber(parts->second, 0, kMaxNibble);
  if (!value) return std::nullopt;
  return TypeValue{kTypes.at(parts->first), *value};
}

bool AddTypeValue(std::vector<TypeValue>& list, const std::string& text) {
  const auto value = ParseTypeValue(text);
  if (value) list.push_back(*value);
  return value.has_value();
}

bool SetSequence(CliOptions& options, const std::string& text) {
  if (text == "all") {
    options.edits.sequence.reset();
    return true;
  }
  options.edits.sequence = ParseNumber(text, 0, kMaxSpuSize);
  return options.edits.sequence.has_value();
}

std::optional<Rgb> ParseColour(const std::string& text) {
  constexpr std::size_t kLength = 7;  // #rrggbb
  if (text.size() != kLength || text[0] != '#') return std::nullopt;
  if (!std::all_of(text.begin() + 1, text.end(),
                   [](unsigned char c) { return std::isxdigit(c); })) {
    return std::nullopt;
  }
  const auto value = ParseNumber("0x" + text.substr(1), 0, 0xFFFFFF);
  if (!value) return std::nullopt;
  return Rgb{static_cast<std::uint8_t>(*value >> 16), static_cast<std::uint8_t>(*value >> 8),
             static_cast<std::uint8_t>(*value)};
}

bool AddEntry(CliOptions& options, const std::string& text) {
  const auto parts = SplitAt(text, '=');
  if (!parts) return false;
  const auto entry = ParseNumber(parts->first, 0, kClutSize - 1);
  const auto colour = ParseColour(parts->second);
  if (!entry || !colour) return false;
  options.entries.emplace_back(*entry, *colour);
  return true;
}

bool SetDelta(CliOptions& options, const std::string& text) {
  double seconds = 0;
  const char* const begin = text.data() + (text.starts_with('+') ? 1 : 0);
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(begin, end, seconds);
  if (error != std::errc() || stop != end || !std::isfinite(seconds)) return false;
  options.delta = seconds;
  return true;
}

bool AddSetting(CliOptions& options, const std::string& text) {
  const auto parts = SplitAt(text, '=');
  if (!parts || parts->first.empty()) return false;
  options.settings.push_back(*parts);
  return true;
}

bool SetLanguage(CliOptions& options, const std::string& text) {
  options.language = TwoLetterCode(text);
  return !options.language.empty();
}

bool SetFade(CliOptions& options, const std::string& text) {
  if (text != "add" && text != "remove") return false;
  options.edits.fade = text == "add" ? FadeEdit::kAdd : FadeEdit::kRemove;
  return true;
}

bool SetStart(CliOptions& options, const std::string& text) {
  if (text != "forced" && text != "normal") return false;
  options.edits.forcedStart = text == "forced";
  return true;
}

bool SetPalette(CliOptions& options, const std::string& text) {
  options.automaticPalette = text == "auto";
  return text == "auto" || text == "ifo";
}

bool SetBits(CliOptions& options, const std::string& text) {
  options.bits = text == "4" ? 4 : 24;
  return text == "4" || text == "24";
}

// A factor above 0, at most a thousand.
std::optional<double> ParseScale(const std::string& text) {
  constexpr double kLargest = 1000;
  constexpr double kSmallest = 0.001;
  double value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  if (!(value >= kSmallest && value <= kLargest)) return std::nullopt;
  return value;
}

bool SetScale(CliOptions& options, const std::string& text) {
  const auto parts = SplitAt(text, ',');
  if (!parts) return false;
  const auto x = ParseScale(parts->first);
  const auto y = ParseScale(parts->second);
  options.scaleX = x.value_or(1);
  options.scaleY = y.value_or(1);
  return x && y;
}

Setter EditFlag(bool UnitEdits::*member) {
  return [member](CliOptions& options, const std::string&) {
    options.edits.*member = true;
    return true;
  };
}

Setter EditNumber(std::optional<int> UnitEdits::*member, int low, int high) {
  return [=](CliOptions& options, const std::string& text) {
    options.edits.*member = ParseNumber(text, low, high);
    return (options.edits.*member).has_value();
  };
}

Setter End(EndEdit end) {
  return [end](CliOptions& options, const std::string&) {
    options.edits.end = end;
    return true;
  };
}

Setter Flag(bool CliOptions::*member) {
  return [member](CliOptions& options, const std::string&) {
    options.*member = true;
    return true;
  };
}

Setter Path(std::string CliOptions::*member) {
  return [member](CliOptions& options, const std::string& text) {
    options.*member = text;
    return !text.empty();
  };
}

Setter Number(std::optional<int> CliOptions::*member, int low, int high) {
  return [=](CliOptions& options, const std::string& text) {
    options.*member = ParseNumber(text, low, high);
    return (options.*member).has_value();
  };
}

std::map<std::string, OptionRule> MakeRules() {
  constexpr int kMaxShort = 0xFFFF;
  constexpr int kMaxMove = 1000;  // pixels or lines; more than any frame
  constexpr int kMaxDurationMs = 1'000'000;
  return {
      {"--help", {false, Flag(&CliOptions::help)}},
      {"--version", {false, Flag(&CliOptions::version)}},
      {"--json", {false, Flag(&CliOptions::json)}},
      {"--quiet", {false, Flag(&CliOptions::quiet)}},
      {"--fast", {false, Flag(&CliOptions::fast)}},
      {"--yes", {false, Flag(&CliOptions::yes)}},
      {"--forced", {false, Flag(&CliOptions::forced)}},
      {"--stream", {true, SetStream}},
      {"--vcid", {true, SetVcid}},
      {"--numbers", {true, SetNumbers}},
      {"--set", {true, AddSetting}},
      {"--colour",
       {true,
        [](CliOptions& o, const std::string& t) { return AddTypeValue(o.edits.colours, t); }}},
      {"--alpha",
       {true, [](CliOptions& o, const std::string& t) { return AddTypeValue(o.edits.alphas, t); }}},
      {"--sequence", {true, SetSequence}},
      {"--move-x", {true, EditNumber(&UnitEdits::moveRight, -kMaxMove, kMaxMove)}},
      {"--move-y", {true, EditNumber(&UnitEdits::moveUp, -kMaxMove, kMaxMove)}},
      {"--border", {true, EditNumber(&UnitEdits::border, 0, kMaxMove)}},
      {"--flush", {false, EditFlag(&UnitEdits::flush)}},
      {"--crop", {false, EditFlag(&UnitEdits::crop)}},
      {"--hide", {false, EditFlag(&UnitEdits::hide)}},
      {"--duration", {true, EditNumber(&UnitEdits::durationMs, 0, kMaxDurationMs)}},
      {"--infinite", {false, End(EndEdit::kInfinite)}},
      {"--stop", {false, End(EndEdit::kAddStop)}},
      {"--start", {true, SetStart}},
      {"--fade", {true, SetFade}},
      {"--ifo", {true, Path(&CliOptions::ifoPath)}},
      {"--types", {true, Path(&CliOptions::typesPath)}},
      {"--out", {true, Path(&CliOptions::outPath)}},
      {"--srt", {true, Path(&CliOptions::srtPath)}},
      {"--language", {true, SetLanguage}},
      {"--keep", {false, Flag(&CliOptions::keep)}},
      {"--saved", {false, Flag(&CliOptions::saved)}},
      {"--composed", {false, Flag(&CliOptions::composed)}},
      {"--bits", {true, SetBits}},
      {"--scale", {true, SetScale}},
      {"--palette", {true, SetPalette}},
      {"--unit",
       {true,
        [](CliOptions& o, const std::string& t) {
          const auto number = ParseNumber(t, 0, kMaxShort);
          o.languageUnit = number.value_or(0);
          return number.has_value();
        }}},
      {"--pgc", {true, Number(&CliOptions::pgc, 0, kMaxShort)}},
      {"--entry", {true, AddEntry}},
      {"--delta", {true, SetDelta}},
  };
}

const std::vector<std::string>& CommonOptions() {
  static const std::vector<std::string> kCommon = {"--help",    "--version", "--json",   "--quiet",
                                                   "--yes",     "--set",     "--stream", "--vcid",
                                                   "--numbers", "--forced",  "--ifo",    "--fast"};
  return kCommon;
}

bool Contains(const std::vector<std::string>& list, const std::string& word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

}  // namespace

std::optional<int> ParseNumber(const std::string& text, int low, int high) {
  const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* const begin = text.data() + (hex ? 2 : 0);
  const char* const end = text.data() + text.size();
  int value = 0;
  const auto [stop, error] = std::from_chars(begin, end, value, hex ? 16 : 10);
  if (error != std::errc() || stop != end || begin == end) return std::nullopt;
  if (value < low || value > high) return std::nullopt;
  return value;
}

std::optional<CliOptions> ParseOptions(const std::vector<std::string>& words,
                                       const std::vector<std::string>& accepted,
                                       std::string& error) {
  const auto rules = MakeRules();
  CliOptions options;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i].empty() || words[i][0] != '-') {
      options.files.push_back(words[i]);
      continue;
    }
    const auto joined = SplitAt(words[i], '=');
    const std::string name = joined ? joined->first : words[i];
    const auto rule = rules.find(name);
    if (rule == rules.end() || !(Contains(CommonOptions(), name) || Contains(accepted, name))) {
      error = "unknown option " + name;
      return std::nullopt;
    }
    const bool fromNext = rule->second.takesValue && !joined;
    if (fromNext && i + 1 == words.size()) {
      error = name + " needs a value";
      return std::nullopt;
    }
    const std::string value = fromNext ? words[++i] : joined ? joined->second : std::string();
    if ((joined && !rule->second.takesValue) || !rule->second.set(options, value)) {
      error = Format("wrong value for %s: %s", name.c_str(), value.c_str());
      return std::nullopt;
    }
  }
  return options;
}

std::string Nearest(const std::string& word, const std::vector<std::string>& candidates) {
  const auto distance = [&word](const std::string& other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= word.size(); ++i) {
      std::size_t diagonal = row[0];
      row[0] = i;
      for (std::size_t j = 1; j <= other.size(); ++j) {
        const std::size_t replaced = diagonal + (word[i - 1] == other[j - 1] ? 0 : 1);
        diagonal = row[j];
        row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
      }
    }
    return row.back();
  };
  return *std::min_element(
      candidates.begin(), candidates.end(),
      [&](const std::string& a, const std::string& b) { return distance(a) < distance(b); });
}

}  // namespace quillomar
