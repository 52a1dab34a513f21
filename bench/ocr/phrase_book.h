#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

namespace quillomar::bench {

// Makes up subtitles from a file of rules ("KEY = alternative | alternative", {KEY} inside an
// alternative stands for one of that key's). The words, which are the keys in small letters, are
// dealt out between tuning and held-out sets, so that no word list is seen by both.
class PhraseBook {
 public:
  PhraseBook(const std::string& path, bool heldOut);
  // Paragraphs of one subtitle, not yet broken into lines; code points.
  [[nodiscard]] std::vector<std::u32string> Make(std::mt19937& random) const;

 private:
  [[nodiscard]] std::string Expand(const std::string& text, std::mt19937& random) const;
  std::map<std::string, std::vector<std::string>> rules_;
};

[[nodiscard]] std::u32string FromUtf8(const std::string& text);
[[nodiscard]] std::string ToUtf8(const std::u32string& text);

// The paragraphs broken into lines of at most `width` characters, as even as that allows.
[[nodiscard]] std::vector<std::u32string> BreakLines(const std::vector<std::u32string>& paragraphs,
                                                     std::size_t width);

}  // namespace quillomar::bench
