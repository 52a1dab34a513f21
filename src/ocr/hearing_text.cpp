#include "ocr/hearing_text.h"

#include <algorithm>
#include <optional>

#include "base/utf8.h"

namespace quillomar {
namespace {

constexpr int kOpeners = 3;
// A word gap that is not one before a colon or behind a dash counts for more than one.
constexpr int kWholeWordGap = 3;
constexpr int kTooManyWords = 2;

char32_t CharacterOf(char bracket) {
  return static_cast<unsigned char>(bracket);
}

std::optional<char32_t> CloserOf(char32_t ch, const HearingBrackets& brackets) {
  for (std::size_t i = 0; i < kOpeners; ++i) {
    if (CharacterOf(brackets[i]) == ch) return CharacterOf(brackets[brackets.size() - 1 - i]);
  }
  return std::nullopt;
}

bool IsCloser(char32_t ch, const HearingBrackets& brackets) {
  return std::any_of(brackets.begin() + kOpeners, brackets.end(),
                     [&](char bracket) { return CharacterOf(bracket) == ch; });
}

class BracketFinder {
 public:
  BracketFinder(std::span<const CharBox> boxes, const HearingBrackets& brackets)
      : boxes_(boxes), brackets_(brackets) {}

  FoundRanges Find() {
    FoundRanges found;
    int at = 0;
    while (at < Count()) {
      const auto closer = CloserOf(At(at), brackets_);
      if (!closer) {
        ++at;
        continue;
      }
      const int end = FindInLine(at + 1, *closer);
      if (end == Count() || At(end) == kLineEnd) {
        at = end + 1;
        continue;
      }
      const bool lineHasOne = !found.ranges.empty() && Line(found.ranges.back().first) == Line(at);
      if (lineHasOne) {
        found.more = true;
      } else {
        found.ranges.push_back({Extended(at, end), end});
      }
      at = end + 1;
    }
    return found;
  }

 private:
  [[nodiscard]] int Count() const { return static_cast<int>(boxes_.size()); }
  [[nodiscard]] char32_t At(int index) const { return boxes_[static_cast<std::size_t>(index)].ch; }
  [[nodiscard]] int Line(int index) const { return boxes_[static_cast<std::size_t>(index)].line; }

  // The first such box from there, else the line's end.
  [[nodiscard]] int FindInLine(int at, char32_t ch) const {
    while (at < Count() && At(at) != ch && At(at) != kLineEnd) ++at;
    return at;
  }

  [[nodiscard]] int Extended(int first, int last) const {
    const auto isIn = [this](int index, std::u32string_view set) {
      return set.find(At(index)) != std::u32string_view::npos;
    };
    int next = last + 1;
    while (next < Count() && isIn(next, U" #:")) ++next;
    if (next < Count() && At(next) != kLineEnd) return first;
    while (first > 0 && isIn(first - 1, U" -#")) --first;
    return first;
  }

  std::span<const CharBox> boxes_;
  const HearingBrackets& brackets_;
};

// Looks for labels in one line.
class LabelFinder {
 public:
  LabelFinder(std::span<const CharBox> boxes, int lineStart) : boxes_(boxes), start_(lineStart) {}

  // Returns the line's end.
  int Find(FoundRanges& found) {
    int at = start_;
    bool cut = false;
    for (; at < Last() && At(at) != kLineEnd; ++at) {
      if (words_ >= kTooManyWords && !allCapitals_) continue;
      Count(at);
      if (!IsLabelEnd(at)) continue;
      if (cut) {
        found.more = true;
      } else {
        found.ranges.push_back(Label(at));
      }
      cut = true;
      words_ = kTooManyWords;
    }
    return at;
  }

 private:
  // The very last box ends the last line.
  [[nodiscard]] int Last() const { return static_cast<int>(boxes_.size()) - 1; }
  [[nodiscard]] char32_t At(int index) const {
    return index < 0 || index > Last() ? U'\0' : boxes_[static_cast<std::size_t>(index)].ch;
  }

  void Count(int at) {
    const char32_t ch = At(at);
    // A capital I is easily read as l.
    if (ch >= U'a' && ch <= U'z' && ch != U'l') allCapitals_ = false;
    if (ch != U' ') return;
    const bool joins = At(at + 1) == U':' || (at > start_ && At(at - 1) == U'-');
    words_ += joins ? 1 : kWholeWordGap;
  }

  [[nodiscard]] bool IsLabelEnd(int at) const {
    if (At(at) != U':' || (words_ >= kTooManyWords && !allCapitals_)) return false;
    const char32_t next = At(at + 1);
    return next != U'O' && (next < U'0' || next > U'9');
  }

  [[nodiscard]] BoxRange Label(int colon) const {
    int first = start_;
    if (At(first) == U'-') ++first;
    if (At(first) == U' ') ++first;
    return {first, At(colon + 1) == U' ' ? colon + 1 : colon};
  }

  std::span<const CharBox> boxes_;
  int start_;
  int words_ = 0;
  bool allCapitals_ = true;
};

}  // namespace

bool IsAllHearingImpaired(const std::vector<std::string>& lines, const HearingBrackets& brackets) {
  char32_t open = 0;  // the closer that is waited for; 0 without one
  bool any = false;
  for (const std::string& line : lines) {
    const std::u32string text = FromUtf8(line);
    std::size_t at = 0;
    if (open == 0) {
      at = text.find_first_not_of(U" -");
      if (at == std::u32string::npos) {
        if (text.empty()) continue;
        return false;
      }
      open = CloserOf(text[at], brackets).value_or(0);
      if (open == 0) return false;
      ++at;
    }
    any = true;
    const std::size_t end = text.find(open, at);
    if (end == std::u32string::npos) continue;
    open = 0;
    const bool closersOnly =
        std::all_of(text.begin() + static_cast<std::ptrdiff_t>(end) + 1, text.end(),
                    [&](char32_t ch) { return ch == U' ' || IsCloser(ch, brackets); });
    if (!closersOnly) return false;
  }
  return any && open == 0;
}

FoundRanges FindBracketedText(std::span<const CharBox> boxes, const HearingBrackets& brackets) {
  return BracketFinder(boxes, brackets).Find();
}

FoundRanges FindSpeakerLabels(std::span<const CharBox> boxes) {
  FoundRanges found;
  for (int at = 0; at < static_cast<int>(boxes.size()); ++at)
    at = LabelFinder(boxes, at).Find(found);
  return found;
}

}  // namespace quillomar
