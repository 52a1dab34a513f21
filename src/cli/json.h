#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillomar {

// Text as a JSON string, quotes included; bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string JsonString(std::string_view text);

// An object put together field by field; values are JSON already.
class JsonObject {
 public:
  JsonObject& Add(std::string_view key, std::string value);
  JsonObject& Add(std::string_view key, const char* value) = delete;  // it would become a bool
  JsonObject& Add(std::string_view key, long long value) { return Add(key, std::to_string(value)); }
  JsonObject& Add(std::string_view key, int value) { return Add(key, std::to_string(value)); }
  JsonObject& Add(std::string_view key, bool value) {
    return Add(key, std::string(value ? "true" : "false"));
  }
  [[nodiscard]] std::string Text() const { return "{" + fields_ + "}"; }

 private:
  std::string fields_;
};

[[nodiscard]] std::string JsonArray(const std::vector<std::string>& items);

}  // namespace quillomar
