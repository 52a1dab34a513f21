#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file.h"

// The text of a settings file:
//
//   ; comment
//   [Section]
//   Key=value
//
// Section and key names are compared without regard to case; of two equal ones the first counts.
// Blanks around a value and one pair of quotes around it (double or single) do not belong to it.
// Lines that are none of these are kept and mean nothing. Bytes above 127 are UTF-8.
namespace quillomar {

class IniText {
 public:
  IniText() = default;
  explicit IniText(std::string_view text);

  // The value of a key; nothing when the key or its section is missing, empty when nothing stands
  // after the equals sign.
  [[nodiscard]] std::optional<std::string> Get(std::string_view section,
                                               std::string_view key) const;
  // Changes the value in its line, or adds the key as the last of its section, or both at the end.
  // Every other line stays as it is, and so does one that already reads as that value. A value ends
  // at its first line break or zero byte.
  void Set(std::string_view section, std::string_view key, std::string_view value);

  [[nodiscard]] std::string Text() const;

 private:
  struct Range {
    std::size_t first = 0, end = 0;  // lines after the section's heading
  };
  [[nodiscard]] std::optional<Range> FindSection(std::string_view section) const;
  [[nodiscard]] std::optional<std::size_t> FindKey(Range range, std::string_view key) const;
  void InsertLine(std::size_t index, std::string line);

  std::string byteOrderMark_;
  std::string lineBreak_ = "\n";    // of the file's first line
  std::vector<std::string> lines_;  // each with its line break
};

// A missing file is an empty text; nothing when the file is there and cannot be read or is larger
// than 1 MiB.
[[nodiscard]] std::optional<IniText> LoadIni(FileSystem& files, const std::string& path);

// Puts the text in the place of the file in one step: a reader sees the old one or the new one.
// Fails, with the old file as it was, when the file is write-protected or its folder takes no file.
Result StoreIni(FileSystem& files, const std::string& path, const IniText& ini);

}  // namespace quillomar
