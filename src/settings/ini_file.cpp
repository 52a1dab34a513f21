#include "settings/ini_file.h"

#include <memory>

#include "base/paths.h"

namespace quillomar {
namespace {

constexpr std::uint64_t kMaxFileSize = 1 << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r\n\f\v";

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view Unquote(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == text.back() &&
                      (text.front() == '"' || text.front() == '\'');
  return quoted ? text.substr(1, text.size() - 2) : text;
}

bool IsComment(std::string_view trimmed) {
  return !trimmed.empty() && trimmed.front() == ';';
}

std::optional<std::string_view> SectionOfLine(std::string_view line) {
  const std::string_view text = Trim(line);
  if (text.empty() || text.front() != '[') return std::nullopt;
  const auto close = text.rfind(']');
  if (close == std::string_view::npos) return std::nullopt;
  return Trim(text.substr(1, close - 1));
}

std::optional<std::string_view> KeyOfLine(std::string_view line) {
  const auto equals = line.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  const std::string_view key = Trim(line.substr(0, equals));
  if (key.empty() || IsComment(key)) return std::nullopt;
  return key;
}

std::string_view ValueOfLine(std::string_view line) {
  return Unquote(Trim(line.substr(line.find('=') + 1)));
}

// A value that reading would strip of its blanks or quotes is stored in quotes.
std::string Stored(const std::string& value) {
  return Unquote(Trim(value)) == value ? value : "\"" + value + "\"";
}

// What follows the line's text: nothing on a last line that was left open.
std::string LineBreakOf(const std::string& line) {
  if (line.ends_with("\r\n")) return "\r\n";
  return line.ends_with('\n') ? "\n" : "";
}

}  // namespace

IniText::IniText(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) {
    byteOrderMark_ = kByteOrderMark;
    text.remove_prefix(kByteOrderMark.size());
  }
  while (!text.empty()) {
    const auto lineBreak = text.find('\n');
    const auto length = lineBreak == std::string_view::npos ? text.size() : lineBreak + 1;
    lines_.emplace_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  if (!lines_.empty() && lines_.front().ends_with("\r\n")) lineBreak_ = "\r\n";
}

std::optional<IniText::Range> IniText::FindSection(std::string_view section) const {
  std::optional<Range> found;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const auto name = SectionOfLine(lines_[i]);
    if (!name) continue;
    if (found) return Range{found->first, i};
    if (EqualIgnoringCase(*name, section)) found = Range{i + 1, lines_.size()};
  }
  return found;
}

std::optional<std::size_t> IniText::FindKey(Range range, std::string_view key) const {
  for (std::size_t i = range.first; i < range.end; ++i) {
    const auto name = KeyOfLine(lines_[i]);
    if (name && EqualIgnoringCase(*name, key)) return i;
  }
  return std::nullopt;
}

std::optional<std::string> IniText::Get(std::string_view section, std::string_view key) const {
  const auto range = FindSection(section);
  const auto line = range ? FindKey(*range, key) : std::nullopt;
  if (!line) return std::nullopt;
  return std::string(ValueOfLine(lines_[*line]));
}

void IniText::InsertLine(std::size_t index, std::string line) {
  if (index > 0 && LineBreakOf(lines_[index - 1]).empty()) lines_[index - 1] += lineBreak_;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(index), std::move(line) + lineBreak_);
}

void IniText::Set(std::string_view section, std::string_view key, std::string_view value) {
  const std::string oneLine(value.substr(0, value.find_first_of(std::string_view("\r\n\0", 3))));
  auto range = FindSection(section);
  if (!range) {
    InsertLine(lines_.size(), std::string("[").append(section).append("]"));
    range = Range{lines_.size(), lines_.size()};
  }
  if (const auto found = FindKey(*range, key)) {
    std::string& line = lines_[*found];
    if (ValueOfLine(line) == oneLine) return;
    line = line.substr(0, line.find('=') + 1) + Stored(oneLine) + LineBreakOf(line);
    return;
  }
  // Blank lines that set the next section apart stay in front of it.
  std::size_t place = range->end;
  while (place > range->first && Trim(lines_[place - 1]).empty()) --place;
  InsertLine(place, std::string(key).append("=").append(Stored(oneLine)));
}

std::string IniText::Text() const {
  std::string text = byteOrderMark_;
  for (const std::string& line : lines_) text += line;
  return text;
}

std::optional<IniText> LoadIni(FileSystem& files, const std::string& path) {
  if (!files.Exists(path)) return IniText();
  const auto bytes = ReadWholeFile(files, path, kMaxFileSize);
  if (!bytes) return std::nullopt;
  return IniText(std::string(bytes->begin(), bytes->end()));
}

Result StoreIni(FileSystem& files, const std::string& path, const IniText& ini) {
  // A rename would replace a write-protected file all the same.
  if (files.Exists(path) && !files.Open(path, OpenMode::kReadWrite)) return Result::kFailed;
  // And it would replace a link instead of the file that the user keeps elsewhere.
  const std::string target = files.Canonical(path);
  const std::string newPath = target + ".new";
  std::unique_ptr<File> file = files.Open(newPath, OpenMode::kCreate);
  if (!file) return Result::kFailed;
  const std::string text = ini.Text();
  const ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  const bool written = !Failed(file->WriteAt(0, bytes)) && !Failed(file->Sync());
  file.reset();
  if (written && !Failed(files.Rename(newPath, target))) return Result::kDone;
  static_cast<void>(files.Remove(newPath));
  return Result::kFailed;
}

}  // namespace quillomar
