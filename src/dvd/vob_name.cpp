#include "dvd/vob_name.h"

#include <algorithm>
#include <charconv>

#include "base/format.h"
#include "base/paths.h"

namespace quillomar {
namespace {

constexpr std::size_t kPieceDigitFromEnd = 5;
constexpr const char* kManagerTitle = "video_ts";

// Takes a decimal number off the front of `text`.
std::optional<int> TakeNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  if (plus) text.remove_prefix(1);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

bool TakeUnderscore(std::string_view& text) {
  if (text.empty() || text.front() != '_') return false;
  text.remove_prefix(1);
  return true;
}

bool IsManagerTitle(std::string_view title) {
  return EqualIgnoringCase(title, kManagerTitle);
}

// ".BUP" with each letter in the case of the letter it replaces; capitals where there is none.
std::string BackupExtension(std::string_view extension) {
  std::string backup = ".BUP";
  for (std::size_t i = 1; i < backup.size() && i < extension.size(); ++i) {
    const bool small = extension[i] >= 'a' && extension[i] <= 'z';
    if (small) backup[i] = static_cast<char>(backup[i] - 'A' + 'a');
  }
  return backup;
}

}  // namespace

VobTitle ParseVobTitle(std::string_view title) {
  VobTitle parsed;
  const std::size_t underscore = title.find('_');
  if (underscore == 0 || underscore == std::string_view::npos) return parsed;
  title.remove_prefix(underscore + 1);
  parsed.titleSet = TakeNumber(title);
  if (parsed.titleSet && TakeUnderscore(title)) parsed.piece = TakeNumber(title);
  return parsed;
}

bool IsMenuFile(std::string_view path) {
  const std::string title = SplitPath(path).title;
  return ParseVobTitle(title).piece == 0 || IsManagerTitle(title);
}

std::string VobName(int titleSet, int piece) {
  if (titleSet == 0) return piece == 0 ? "VIDEO_TS.VOB" : "";
  return Format("VTS_%02d_%d.VOB", titleSet, piece);
}

std::string IfoName(int titleSet) {
  return titleSet == 0 ? "VIDEO_TS.IFO" : Format("VTS_%02d_0.IFO", titleSet);
}

std::optional<int> IfoNameIndex(std::string_view path) {
  const PathParts parts = SplitPath(path);
  const int index = ParseVobTitle(parts.title).titleSet.value_or(0);
  if (index < 0 || index > kMaxTitleSets) return std::nullopt;
  if (!EqualIgnoringCase(parts.title + parts.extension, IfoName(index))) return std::nullopt;
  return index;
}

std::string IfoPathOfVob(std::string_view vobPath) {
  const PathParts parts = SplitPath(vobPath);
  const std::string ifo = parts.folder + parts.title + ".IFO";
  return parts.title.empty() || IsManagerTitle(parts.title) ? ifo : PiecePath(ifo, 0);
}

std::string BackupPathOfIfo(std::string_view ifoPath) {
  const PathParts parts = SplitPath(ifoPath);
  return parts.folder + parts.title + BackupExtension(parts.extension);
}

std::optional<int> PieceDigit(std::string_view vobPath) {
  if (vobPath.size() < kPieceDigitFromEnd) return std::nullopt;
  const char digit = vobPath[vobPath.size() - kPieceDigitFromEnd];
  if (digit < '0' || digit > '9') return std::nullopt;
  return digit - '0';
}

std::string PiecePath(std::string_view vobPath, int piece) {
  std::string path(vobPath);
  if (path.size() >= kPieceDigitFromEnd) {
    path[path.size() - kPieceDigitFromEnd] = static_cast<char>('0' + piece);
  }
  return path;
}

}  // namespace quillomar
