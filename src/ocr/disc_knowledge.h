#pragma once

#include <map>
#include <utility>

#include "ocr/character_shapes.h"
#include "ocr/pattern_store.h"
#include "ocr/slant.h"
#include "ocr/spacing.h"

namespace quillomar {

// Neighbouring patterns that a recogniser read as one character, and those that it did not.
class JoinModel {
 public:
  enum class Answer { kApart, kOne, kUnsure };
  using Pair = std::pair<std::size_t, std::size_t>;
  void Learn(const Pair& pair, bool one);
  [[nodiscard]] Answer Ask(const Pair& pair) const;

 private:
  struct Count {
    int one = 0, apart = 0;
  };
  std::map<Pair, Count> counts_;
};

// What reading a disc teaches about it.
struct DiscKnowledge {
  SlantModel slants;
  HeightStatistics heights;
  PatternStore patterns;
  JoinModel joins;
  CharacterWidths widths;
  SpaceModel spaces;
};

}  // namespace quillomar
