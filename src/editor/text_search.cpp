#include "editor/text_search.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillomar {
namespace {

constexpr std::size_t kLongestCharacter = 4;
constexpr unsigned kTwoByteLead = 0xC0;
constexpr unsigned kContinuation = 0x80;
constexpr unsigned kPayload = 0x3F;
constexpr unsigned kPayloadBits = 6;

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == kContinuation;
}

// Bytes of the character that begins here.
std::size_t CharacterLength(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && length < kLongestCharacter && IsContinuation(text[length])) {
    ++length;
  }
  return length;
}

// Capital and small letter alternate in most of the Latin extensions; in some runs the capitals are
// the odd numbers.
std::uint32_t FoldLatinExtended(std::uint32_t c) {
  if (c == 0x178) return 0xFF;
  const bool oddCapitals = (c >= 0x139 && c <= 0x148) || c > 0x178;
  return (c % 2 == 1) == oddCapitals ? c + 1 : c;
}

// Unicode numbers of the letters that two bytes can write.
std::uint32_t FoldLetter(std::uint32_t c) {
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 0x20;
  if (c >= 0x100 && c <= 0x17E && c != 0x130 && c != 0x131 && c != 0x138 && c != 0x149) {
    return FoldLatinExtended(c);
  }
  if (c >= 0x391 && c <= 0x3A9) return c + 0x20;
  if (c >= 0x410 && c <= 0x42F) return c + 0x20;
  if (c >= 0x400 && c <= 0x40F) return c + 0x50;
  return c;
}

std::string FoldCharacter(std::string_view character) {
  const auto lead = static_cast<unsigned char>(character[0]);
  if (character.size() != 2 || lead < kTwoByteLead) return std::string(character);
  const auto second = static_cast<unsigned char>(character[1]);
  const std::uint32_t folded =
      FoldLetter((lead & 0x1FU) << kPayloadBits | (static_cast<std::uint32_t>(second) & kPayload));
  return {static_cast<char>(kTwoByteLead | folded >> kPayloadBits),
          static_cast<char>(kContinuation | (folded & kPayload))};
}

}  // namespace

std::string FoldCase(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  while (!text.empty()) {
    const std::string_view character = text.substr(0, CharacterLength(text));
    const char first = character[0];
    if (character.size() > 1) {
      folded += FoldCharacter(character);
    } else {
      folded += first >= 'A' && first <= 'Z' ? static_cast<char>(first + ('a' - 'A')) : first;
    }
    text.remove_prefix(character.size());
  }
  return folded;
}

TextSearch::TextSearch(std::string_view text, bool caseSensitive)
    : text_(caseSensitive ? text : FoldCase(text)), caseSensitive_(caseSensitive) {}

bool TextSearch::FoundIn(const std::vector<std::string>& lines) const {
  if (text_.empty()) return false;
  return std::any_of(lines.begin(), lines.end(), [this](const std::string& line) {
    return (caseSensitive_ ? line : FoldCase(line)).find(text_) != std::string::npos;
  });
}

bool HoldsAnyOf(const std::vector<std::string>& lines, std::string_view characters) {
  while (!characters.empty()) {
    const std::string_view character = characters.substr(0, CharacterLength(characters));
    const bool held = std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
      return line.find(character) != std::string::npos;
    });
    if (held) return true;
    characters.remove_prefix(character.size());
  }
  return false;
}

}  // namespace quillomar
