#pragma once

#include <array>
#include <cstdint>

namespace quillomar {

inline constexpr int kClutSize = 16;

struct YCrCb {
  std::uint8_t y = 0, cr = 0, cb = 0;
  friend bool operator==(const YCrCb&, const YCrCb&) = default;
};
struct Rgb {
  std::uint8_t r = 0, g = 0, b = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

using YCrCbClut = std::array<YCrCb, kClutSize>;
using RgbClut = std::array<Rgb, kClutSize>;

[[nodiscard]] Rgb ToRgb(YCrCb colour);
[[nodiscard]] YCrCb ToYCrCb(Rgb colour);
[[nodiscard]] RgbClut ToRgb(const YCrCbClut& clut);

// The colour table of one program chain. Entries stay Y, Cr, Cb, so that what is not edited is
// never converted.
struct ClutRecord {
  YCrCbClut entries{};
  YCrCbClut saved{};     // as in the IFO
  int languageUnit = 0;  // 0: title domain
  int pgc = 0;           // from 1; 0 with language unit 0: first play

  [[nodiscard]] bool Modified() const { return entries != saved; }
};

}  // namespace quillomar
