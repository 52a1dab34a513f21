#include "phrase_book.h"

#include <cctype>
#include <fstream>
#include <stdexcept>

namespace quillomar::bench {
namespace {

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  while (true) {
    const std::size_t end = text.find(separator, begin);
    parts.push_back(Trimmed(text.substr(begin, end - begin)));
    if (end == std::string::npos) return parts;
    begin = end + 1;
  }
}

std::vector<std::string> EverySecond(const std::vector<std::string>& words, std::size_t first) {
  std::vector<std::string> dealt;
  for (std::size_t i = first; i < words.size(); i += 2) dealt.push_back(words[i]);
  return dealt;
}

}  // namespace

PhraseBook::PhraseBook(const std::string& path, bool heldOut) {
  std::ifstream in(path);
  if (!in) throw std::runtime_error("cannot read " + path);
  for (std::string line; std::getline(in, line);) {
    const std::size_t equals = line.find('=');
    if (line.starts_with('#') || equals == std::string::npos) continue;
    const std::string key = Trimmed(line.substr(0, equals));
    std::vector<std::string> alternatives = Split(line.substr(equals + 1), '|');
    if (std::islower(static_cast<unsigned char>(key[0])) != 0) {
      alternatives = EverySecond(alternatives, heldOut ? 1 : 0);
    }
    rules_[key] = std::move(alternatives);
  }
}

std::string PhraseBook::Expand(const std::string& text, std::mt19937& random) const {
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '{') {
      out += text[at];
      continue;
    }
    const std::size_t end = text.find('}', at);
    const auto& alternatives = rules_.at(text.substr(at + 1, end - at - 1));
    out += Expand(alternatives[random() % alternatives.size()], random);
    at = end;
  }
  return out;
}

std::vector<std::u32string> PhraseBook::Make(std::mt19937& random) const {
  std::vector<std::u32string> paragraphs;
  for (const std::string& part : Split(Expand("{UNIT}", random), '/')) {
    paragraphs.push_back(FromUtf8(part));
  }
  return paragraphs;
}

std::u32string FromUtf8(const std::string& text) {
  std::u32string out;
  for (std::size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t ch = more == 0 ? lead : lead & (0x3FU >> static_cast<unsigned>(more));
    for (int i = 0; i < more; ++i) {
      ch = ch << 6U | (static_cast<unsigned char>(text[at++]) & 0x3FU);
    }
    out += ch;
  }
  return out;
}

std::string ToUtf8(const std::u32string& text) {
  std::string out;
  for (const char32_t ch : text) {
    if (ch < 0x80) {
      out += static_cast<char>(ch);
    } else if (ch < 0x800) {
      out += static_cast<char>(0xC0 | ch >> 6U);
      out += static_cast<char>(0x80 | (ch & 0x3FU));
    } else {
      out += static_cast<char>(0xE0 | ch >> 12U);
      out += static_cast<char>(0x80 | (ch >> 6U & 0x3FU));
      out += static_cast<char>(0x80 | (ch & 0x3FU));
    }
  }
  return out;
}

std::vector<std::u32string> BreakLines(const std::vector<std::u32string>& paragraphs,
                                       std::size_t width) {
  std::vector<std::u32string> lines;
  for (const std::u32string& paragraph : paragraphs) {
    const std::size_t rows = (paragraph.size() + width - 1) / width;
    const std::size_t goal = std::min(width, paragraph.size() / std::max<std::size_t>(rows, 1) + 6);
    std::u32string rest = paragraph;
    while (rest.size() > goal) {
      std::size_t cut = rest.rfind(U' ', goal);
      if (cut == std::u32string::npos || cut == 0) cut = rest.find(U' ');
      if (cut == std::u32string::npos) break;
      lines.push_back(rest.substr(0, cut));
      rest.erase(0, cut + 1);
    }
    lines.push_back(rest);
  }
  return lines;
}

}  // namespace quillomar::bench
