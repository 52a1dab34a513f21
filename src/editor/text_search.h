#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillomar {

// Letters of the Latin, Greek and Cyrillic alphabets become small ones; other bytes of the UTF-8
// text, broken ones too, stay as they are.
[[nodiscard]] std::string FoldCase(std::string_view text);

// Looks for a text in the lines that were recognised in a subpicture.
class TextSearch {
 public:
  TextSearch(std::string_view text, bool caseSensitive);

  // Some line holds the text. An empty text is found in no line.
  [[nodiscard]] bool FoundIn(const std::vector<std::string>& lines) const;

 private:
  std::string text_;
  bool caseSensitive_;
};

// Some line holds one of the characters (UTF-8), exactly as they are written.
[[nodiscard]] bool HoldsAnyOf(const std::vector<std::string>& lines, std::string_view characters);

}  // namespace quillomar
