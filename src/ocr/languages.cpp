#include "ocr/languages.h"

namespace quillomar {

const std::vector<ReadableLanguage>& ReadableLanguages() {
  static const std::vector<ReadableLanguage> languages = {
      {"en", "eng", ""},    {"fr", "fra", "fre"}, {"de", "deu", "ger"}, {"es", "spa", ""},
      {"it", "ita", ""},    {"nl", "nld", "dut"}, {"pt", "por", ""},    {"sv", "swe", ""},
      {"da", "dan", ""},    {"no", "nor", ""},    {"fi", "fin", ""},    {"pl", "pol", ""},
      {"cs", "ces", "cze"}, {"hu", "hun", ""},    {"ro", "ron", "rum"}, {"tr", "tur", ""},
      {"hr", "hrv", ""},    {"sl", "slv", ""},    {"sk", "slk", "slo"}, {"et", "est", ""},
      {"lv", "lav", ""},    {"lt", "lit", ""},    {"is", "isl", "ice"}, {"ca", "cat", ""},
      {"el", "ell", "gre"}, {"ru", "rus", ""},    {"uk", "ukr", ""},    {"bg", "bul", ""},
      {"sr", "srp", ""}};
  return languages;
}

std::string TwoLetterCode(const std::string& code) {
  for (const ReadableLanguage& each : ReadableLanguages()) {
    if (!code.empty() && (code == each.code || code == each.model || code == each.other))
      return each.code;
  }
  return {};
}

}  // namespace quillomar
