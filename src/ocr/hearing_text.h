#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "spu/char_box.h"

// Finds what is written for the hearing-impaired alone: text between brackets and speaker labels.
namespace quillomar {

// Three opening brackets, then the three closing ones in reverse order.
using HearingBrackets = std::array<char, 6>;

// Neighbouring boxes of one line, both ends included.
struct BoxRange {
  int first = 0, last = 0;
  friend bool operator==(const BoxRange&, const BoxRange&) = default;
};

struct FoundRanges {
  std::vector<BoxRange> ranges;  // one a line at most: cutting one moves what follows it
  bool more = false;             // lines hold more, which the text read anew will show
};

// True when the text is there and nothing in it stands outside brackets; these may go on over line
// ends.
[[nodiscard]] bool IsAllHearingImpaired(const std::vector<std::string>& lines,
                                        const HearingBrackets& brackets);

// Text in brackets that open and close in one line, with the dash in front of it where nothing
// follows.
[[nodiscard]] FoundRanges FindBracketedText(std::span<const CharBox> boxes,
                                            const HearingBrackets& brackets);

// A line's beginning up to a colon, with the space behind: one word or, where all letters are
// capitals, any number. Times such as 10:30 are no labels.
[[nodiscard]] FoundRanges FindSpeakerLabels(std::span<const CharBox> boxes);

}  // namespace quillomar
