#include "ocr/pattern_database.h"

#include <algorithm>
#include <charconv>

#include "base/format.h"
#include "base/paths.h"
#include "base/utf8.h"

namespace quillomar {
namespace {

constexpr const char* kListName = "db.lst";
constexpr std::uint64_t kMostListBytes = 1 << 20;
constexpr std::uint64_t kMostImageBytes = 64 << 10;
constexpr int kMostColumns = 720;
constexpr int kMostRows = 576;
constexpr int kWordBits = 64;
constexpr int kMostDepth = kMostRows;

std::string ImageName(unsigned long number) {
  return Format("db_%lu.pbm", number);
}

// Fields of a portable bitmap's header: numbers parted by blanks and comments.
class HeaderReader {
 public:
  explicit HeaderReader(ByteSpan bytes) : bytes_(bytes) {}

  bool Take(char wanted) {
    if (At() != wanted) return false;
    ++place_;
    return true;
  }
  std::optional<int> Number(int most) {
    SkipBlanks();
    int value = 0;
    bool any = false;
    for (; At() >= '0' && At() <= '9'; ++place_) {
      value = value * 10 + (At() - '0');
      if (value > most) return {};
      any = true;
    }
    return any && value > 0 ? std::optional(value) : std::nullopt;
  }
  // What follows the one blank behind the header.
  [[nodiscard]] ByteSpan Rest() const {
    return bytes_.subspan(std::min(place_ + 1, bytes_.size()));
  }
  [[nodiscard]] bool AtBlank() const { return IsBlank(At()); }

 private:
  static bool IsBlank(int byte) {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
  }
  [[nodiscard]] int At() const { return place_ < bytes_.size() ? bytes_[place_] : -1; }
  void SkipBlanks() {
    while (IsBlank(At()) || At() == '#') {
      if (At() == '#') {
        while (At() != '\n' && At() != -1) ++place_;
      } else {
        ++place_;
      }
    }
  }

  ByteSpan bytes_;
  std::size_t place_ = 0;
};

template <typename Number>
bool TakeNumber(std::string_view& text, Number& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end == text.data() + text.size() || *end != ' ') return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()) + 1);
  return true;
}

std::string Line(const PatternEntry& entry) {
  return Format("%lu %d %d ", entry.number, entry.depth, entry.xHeight) + ToUtf8(entry.text) + "\n";
}

}  // namespace

std::optional<GlyphPattern> ParsePatternImage(ByteSpan bytes) {
  HeaderReader header(bytes);
  if (!header.Take('P') || !header.Take('4')) return {};
  const auto width = header.Number(kMostColumns);
  const auto height = header.Number(kMostRows);
  if (!width || !height || !header.AtBlank()) return {};
  const int rowBytes = (*width + 7) / 8;
  const ByteSpan rows = header.Rest();
  if (rows.size() != static_cast<std::size_t>(rowBytes * *height)) return {};
  GlyphPattern pattern;
  pattern.width = *width;
  pattern.height = *height;
  pattern.wordsInRow = (*width + kWordBits - 1) / kWordBits;
  pattern.bits.resize(static_cast<std::size_t>(pattern.wordsInRow * *height));
  for (int y = 0; y < *height; ++y) {
    for (int x = 0; x < *width; ++x) {
      if ((rows[static_cast<std::size_t>(y * rowBytes + x / 8)] >> (7 - x % 8) & 1) != 0)
        pattern.Set(x, y);
    }
  }
  return pattern.pixels > 0 ? std::optional(pattern) : std::nullopt;
}

Bytes WritePatternImage(const GlyphPattern& pattern) {
  const std::string header = Format("P4\n%d %d\n", pattern.width, pattern.height);
  Bytes bytes(header.begin(), header.end());
  for (int y = 0; y < pattern.height; ++y) {
    for (int x = 0; x < pattern.width; x += 8) {
      unsigned byte = 0;
      for (int i = 0; i < 8; ++i) {
        byte = byte << 1U | (x + i < pattern.width && pattern.Has(x + i, y) ? 1U : 0U);
      }
      bytes.push_back(static_cast<std::uint8_t>(byte));
    }
  }
  return bytes;
}

std::optional<PatternEntry> ParsePatternEntry(const std::string& line) {
  std::string_view rest = line;
  PatternEntry entry;
  if (!TakeNumber(rest, entry.number) || !TakeNumber(rest, entry.depth) ||
      !TakeNumber(rest, entry.xHeight) || rest.empty()) {
    return {};
  }
  entry.text = FromUtf8(rest);
  const bool printable = std::all_of(entry.text.begin(), entry.text.end(), [](char32_t ch) {
    return ch > U' ' && ch != 0x7F && ch != kReplacementCharacter;
  });
  const bool inRange =
      std::abs(entry.depth) <= kMostDepth && entry.xHeight >= 1 && entry.xHeight <= kMostRows;
  return printable && inRange ? std::optional(entry) : std::nullopt;
}

std::string PatternDatabase::PathOf(const std::string& name) const {
  return JoinPath(folder_, name);
}

void PatternDatabase::Load() {
  if (folder_.empty() || !files_.Exists(PathOf(kListName))) return;
  const auto bytes = ReadWholeFile(files_, PathOf(kListName), kMostListBytes);
  if (!bytes) {
    reporter_.LogLine("Cannot read the list of OCR patterns " + PathOf(kListName));
    return;
  }
  std::string list(bytes->begin(), bytes->end());
  std::erase(list, '\r');
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find('\n', begin), list.size());
    if (end > begin) LoadEntry(list.substr(begin, end - begin));
    begin = end + 1;
  }
}

void PatternDatabase::LoadEntry(const std::string& line) {
  const auto entry = ParsePatternEntry(line);
  const bool again =
      entry && std::any_of(taught_.begin(), taught_.end(),
                           [&](const Taught& taught) { return taught.number == entry->number; });
  if (!entry || again) {
    reporter_.LogLine("Skipping a damaged line of the OCR pattern list");
    return;
  }
  const auto bytes = ReadWholeFile(files_, PathOf(ImageName(entry->number)), kMostImageBytes);
  auto pattern = bytes ? ParsePatternImage(*bytes) : std::nullopt;
  if (!pattern) {
    reporter_.LogLine("Skipping the damaged OCR pattern " + ImageName(entry->number));
    return;
  }
  pattern->depth = entry->depth;
  pattern->xHeight = entry->xHeight;
  const std::size_t id = patterns_.FindOrAdd(*pattern);
  if (id == taught_.size()) taught_.push_back({entry->number, entry->text});
}

std::u32string PatternDatabase::TextOf(const GlyphPattern& pattern) const {
  if (taught_.empty()) return {};
  const auto id = patterns_.Find(pattern);
  return id ? taught_[*id].text : std::u32string();
}

Result PatternDatabase::Teach(const GlyphPattern& pattern, const std::u32string& text) {
  const std::size_t id = patterns_.FindOrAdd(pattern);
  if (id == taught_.size()) {
    unsigned long next = 1;
    for (const Taught& taught : taught_) next = std::max(next, taught.number + 1);
    taught_.push_back({next, text});
  }
  taught_[id].text = text;
  if (folder_.empty() || !Failed(Keep(id))) return Result::kDone;
  reporter_.ReportError("Cannot write the OCR pattern database in " + folder_);
  return Result::kFailed;
}

Result PatternDatabase::Keep(std::size_t id) {
  if (!files_.IsFolder(folder_) && Failed(files_.CreateFolder(folder_))) return Result::kFailed;
  const Bytes image = WritePatternImage(patterns_.PatternAt(id));
  // The list names the image, so the image comes first.
  if (Failed(WriteFile(ImageName(taught_[id].number), image))) return Result::kFailed;
  std::string list;
  for (std::size_t i = 0; i < taught_.size(); ++i) {
    const GlyphPattern& pattern = patterns_.PatternAt(i);
    list += Line({taught_[i].number, pattern.depth, pattern.xHeight, taught_[i].text});
  }
  return WriteFile(kListName, Bytes(list.begin(), list.end()));
}

Result PatternDatabase::WriteFile(const std::string& name, ByteSpan bytes) {
  const std::string draft = PathOf(name + ".new");
  const auto file = files_.Open(draft, OpenMode::kCreate);
  if (!file || Failed(file->WriteAt(0, bytes)) || Failed(file->Sync())) return Result::kFailed;
  return files_.Rename(draft, PathOf(name));
}

}  // namespace quillomar
