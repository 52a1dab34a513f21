#pragma once

#include <string>
#include <vector>

namespace quillomar {

// Languages that may be read: two letters as discs name them, and the name of Tesseract's model.
struct ReadableLanguage {
  const char* code;
  const char* model;
  const char* other;  // three letters that are used as well
};
[[nodiscard]] const std::vector<ReadableLanguage>& ReadableLanguages();

// The two letters for a code of two or three; empty for a language that is not known.
[[nodiscard]] std::string TwoLetterCode(const std::string& code);

}  // namespace quillomar
