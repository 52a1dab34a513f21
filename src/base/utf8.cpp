#include "base/utf8.h"

#include <cstdint>

namespace quillomar {
namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

bool IsSurrogate(char32_t value) {
  return value >= 0xD800 && value <= 0xDFFF;
}

struct Sequence {
  std::size_t length = 0;  // 0: not well formed
  char32_t value = kReplacementCharacter;
};

Sequence ReadSequence(std::string_view text) {
  const auto byte = [&text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t first = byte(0);
  if (first < 0x80) return {1, first};
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return {};
  char32_t value = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {};
    value = value << 6U | (byte(i) & 0x3FU);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kSmallest[length] || value > kLastCodePoint || IsSurrogate(value)) return {};
  return {length, value};
}

// Head bits of a sequence of one to four bytes.
constexpr char32_t kHeads[] = {0, 0, 0xC0, 0xE0, 0xF0};

void Append(std::string& out, char32_t value) {
  const std::size_t length = value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
  out += static_cast<char>(kHeads[length] | value >> (6 * (length - 1)));
  for (std::size_t left = length - 1; left > 0; --left) {
    out += static_cast<char>(0x80U | (value >> (6 * (left - 1)) & 0x3FU));
  }
}

}  // namespace

std::size_t Utf8Length(std::string_view text) {
  return ReadSequence(text).length;
}

std::u32string FromUtf8(std::string_view text) {
  std::u32string out;
  while (!text.empty()) {
    const Sequence sequence = ReadSequence(text);
    out += sequence.value;
    text.remove_prefix(sequence.length == 0 ? 1 : sequence.length);
  }
  return out;
}

std::string ToUtf8(std::u32string_view text) {
  std::string out;
  for (const char32_t value : text) {
    Append(out, value > kLastCodePoint || IsSurrogate(value) ? kReplacementCharacter : value);
  }
  return out;
}

}  // namespace quillomar
