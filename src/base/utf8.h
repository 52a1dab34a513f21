#pragma once

#include <string>
#include <string_view>

namespace quillomar {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// Length of the UTF-8 sequence at the start of a text that is not empty; 0 when there is none that
// is well formed.
[[nodiscard]] std::size_t Utf8Length(std::string_view text);

// Code points; each byte that is not part of a well-formed sequence becomes U+FFFD.
[[nodiscard]] std::u32string FromUtf8(std::string_view text);

// A code point that cannot be written becomes U+FFFD.
[[nodiscard]] std::string ToUtf8(std::u32string_view text);

}  // namespace quillomar
