#include "cli/json.h"

#include "base/format.h"
#include "base/utf8.h"

namespace quillomar {
namespace {

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
    const std::size_t length = Utf8Length(text);
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
