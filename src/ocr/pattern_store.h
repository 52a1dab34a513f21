#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ocr/glyphs.h"

namespace quillomar {

// The ink of a glyph in the picture's own pixels, and where it stands.
struct GlyphPattern {
  int width = 0, height = 0;
  int wordsInRow = 0;
  std::vector<std::uint64_t> bits;  // rows; column 0 is bit 0 of a row's first word
  int pixels = 0;
  int depth = 0;    // rows by which it ends below the baseline
  int xHeight = 1;  // of its line

  [[nodiscard]] bool Has(int x, int y) const;
  void Set(int x, int y);
};
[[nodiscard]] GlyphPattern PatternOf(const Glyph& glyph, const LineMetrics& metrics);

// Whether both are the same glyph, rendered at another place between the pixels at most.
[[nodiscard]] bool AreAlike(const GlyphPattern& a, const GlyphPattern& b);

// What readings made of a pattern.
class Votes {
 public:
  void Add(const std::u32string& text, double weight);
  [[nodiscard]] int Count() const { return count_; }
  // The text with the greatest weight; the lower code points win a tie. Empty without votes.
  [[nodiscard]] std::u32string Best() const;
  // Its part of the whole weight.
  [[nodiscard]] double Share() const { return ShareOf(Best()); }
  [[nodiscard]] double ShareOf(const std::u32string& text) const;

 private:
  std::map<std::u32string, double> weights_;
  double sum_ = 0;
  int count_ = 0;
};

// The different glyphs of a disc, numbered as they were met.
class PatternStore {
 public:
  // The most similar pattern that is alike.
  [[nodiscard]] std::optional<std::size_t> Find(const GlyphPattern& pattern) const;
  std::size_t FindOrAdd(const GlyphPattern& pattern);
  [[nodiscard]] const GlyphPattern& PatternAt(std::size_t id) const { return entries_[id].pattern; }
  [[nodiscard]] const Votes& VotesOf(std::size_t id) const { return entries_[id].votes; }
  void Vote(std::size_t id, const std::u32string& text, double weight) {
    entries_[id].votes.Add(text, weight);
  }
  [[nodiscard]] std::size_t Size() const { return entries_.size(); }

 private:
  struct Entry {
    GlyphPattern pattern;
    Votes votes;
  };
  std::vector<Entry> entries_;
  std::map<std::pair<int, int>, std::vector<std::size_t>> bySize_;  // height, width
};

}  // namespace quillomar
