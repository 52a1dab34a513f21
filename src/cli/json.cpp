#include "cli/json.h"

#include <cstdint>

#include "base/format.h"

namespace quillomar {
namespace {

// Length of the UTF-8 sequence at the start of the text; 0 when there is none that is well formed.
std::size_t SequenceLength(std::string_view text) {
  const auto byte = [&text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  std::uint32_t value = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    value = value << 6 | (byte(i) & 0x3FU);
  }
  constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  return value < kSmallest[length] || value > 0x10FFFF || surrogate ? 0 : length;
}

std::string Escaped(char c) {
  if (c == '"') return "\\\"";
  if (c == '\\') return "\\\\";
  if (c == '\n') return "\\n";
  if (static_cast<unsigned char>(c) < 0x20) return Format("\\u%04x", static_cast<unsigned>(c));
  return {c};
}

}  // namespace

std::string JsonString(std::string_view text) {
  std::string out = "\"";
  while (!text.empty()) {
    const std::size_t length = SequenceLength(text);
    if (length == 0) {
      out += "\\ufffd";
    } else if (length == 1) {
      out += Escaped(text[0]);
    } else {
      out += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return out + "\"";
}

JsonObject& JsonObject::Add(std::string_view key, std::string value) {
  if (!fields_.empty()) fields_ += ", ";
  fields_ += JsonString(key) + ": " + std::move(value);
  return *this;
}

std::string JsonArray(const std::vector<std::string>& items) {
  std::string text = "[";
  for (const std::string& item : items) {
    if (text.size() > 1) text += ", ";
    text += item;
  }
  return text + "]";
}

}  // namespace quillomar
