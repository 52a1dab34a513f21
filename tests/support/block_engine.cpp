#include "support/block_engine.h"

#include <algorithm>
#include <map>

#include "base/utf8.h"
#include "spu/char_box.h"

namespace quillomar::test {
namespace {

// A character's block is two columns wider than its place here; a question mark stands for what
// cannot be read.
constexpr std::u32string_view kAlphabet = U"[]()#-:ABCabciOHE1x?";
constexpr int kNarrowest = 2;
constexpr int kGap = 2;
constexpr int kWordGap = 10;

int WidthOf(char32_t ch) {
  return kNarrowest + static_cast<int>(kAlphabet.find(ch));
}

char32_t CharacterOf(int width) {
  const auto index = static_cast<std::size_t>(width - kNarrowest);
  return index < kAlphabet.size() && kAlphabet[index] != U'?' ? kAlphabet[index] : 0;
}

// Columns of ink of one line, straightened, with their first and last rows.
struct Ink {
  std::map<int, std::pair<int, int>> columns;
  int firstRow = 0, lastRow = 0;
};

std::vector<Ink> FindLines(const EnginePicture& picture, float slant) {
  const auto isInk = [&](int column, int row) {
    return picture.grey[static_cast<std::size_t>(row * picture.width + column)] == 0;
  };
  std::vector<Ink> lines;
  bool inLine = false;
  for (int row = 0; row < picture.height; ++row) {
    bool any = false;
    for (int column = 0; column < picture.width; ++column) any = any || isInk(column, row);
    if (any && !inLine) lines.push_back({{}, row, row});
    if (any) lines.back().lastRow = row;
    inLine = any;
  }
  for (Ink& line : lines) {
    const int refRow = line.firstRow + kBlockHeight - 1;
    for (int row = line.firstRow; row <= line.lastRow; ++row) {
      for (int column = 0; column < picture.width; ++column) {
        if (!isInk(column, row)) continue;
        auto [place, isNew] =
            line.columns.try_emplace(column + SlantShift(row, refRow, slant), row, row);
        place->second.second = row;
      }
    }
  }
  return lines;
}

void AddSpace(int from, int to, const EngineBox& before, EngineResult& result) {
  if (to - from + 1 < kWordGap) return;
  result.boxes.push_back({from, to, before.y0, before.y1, U' ', false});
}

void ReadLine(const Ink& line, EngineResult& result) {
  const std::size_t first = result.boxes.size();
  for (auto at = line.columns.begin(); at != line.columns.end();) {
    EngineBox box{at->first, at->first, at->second.first, at->second.second, 0, false};
    for (; at != line.columns.end() && at->first <= box.x1 + 1; ++at) box.x1 = at->first;
    box.ch = CharacterOf(box.x1 - box.x0 + 1);
    if (result.boxes.size() > first) {
      AddSpace(result.boxes.back().x1 + 1, box.x0 - 1, box, result);
    }
    result.boxes.push_back(box);
  }
  std::u32string text;
  for (std::size_t i = first; i < result.boxes.size(); ++i) {
    text += result.boxes[i].ch == 0 ? U'_' : result.boxes[i].ch;
  }
  result.boxes.push_back({0, 0, line.firstRow, line.lastRow, U'\n', false});
  result.lines.push_back({ToUtf8(text), line.firstRow + kBlockHeight - 1, 0});
}

}  // namespace

std::vector<std::string> DrawBlocks(const std::vector<std::string>& lines, float slant) {
  std::size_t width = 0;
  for (const std::string& line : lines) {
    std::size_t end = 2 * kBlockMargin;
    for (const char32_t ch : FromUtf8(line)) {
      end += ch == U' ' ? kWordGap : static_cast<std::size_t>(WidthOf(ch)) + kGap;
    }
    width = std::max(width, end);
  }
  std::vector<std::string> rows(lines.size() * kBlockPitch + kBlockPitch, std::string(width, '0'));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    int left = kBlockMargin;
    for (const char32_t ch : FromUtf8(lines[i])) {
      const int blockWidth = ch == U' ' ? 0 : WidthOf(ch);
      for (int row = 0; row < kBlockHeight; ++row) {
        const int start = left - SlantShift(row, kBlockHeight - 1, slant);
        rows[i * kBlockPitch + static_cast<std::size_t>(4 + row)].replace(
            static_cast<std::size_t>(start), static_cast<std::size_t>(blockWidth),
            static_cast<std::size_t>(blockWidth), '1');
      }
      left += ch == U' ' ? kWordGap : blockWidth + kGap;
    }
  }
  return rows;
}

EngineResult BlockEngine::Recognise(const EnginePicture& picture, const EngineSettings&) {
  ++picturesRead;
  EngineResult result;
  for (const Ink& line : FindLines(picture, slant_)) ReadLine(line, result);
  for (EngineLine& line : result.lines) line.slant = slant_;
  return result;
}

std::vector<std::optional<EngineResult>> BlockEngine::RecogniseAll(const PictureSource& pictures,
                                                                   const EngineSettings& settings,
                                                                   const EngineProgress& progress) {
  std::vector<std::optional<EngineResult>> results(pictures.Count());
  for (std::size_t i = 0; i < results.size(); ++i) {
    results[i] = Recognise(pictures.Get(i), settings);
    if (!progress(i + 1, results.size())) break;
  }
  return results;
}

std::vector<int> BlockEngine::CountAppearances(const Lesson& lesson, const PictureSource& pictures,
                                               const EngineSettings& settings) {
  const int width = lesson.boxes.back().x1 - lesson.boxes.front().x0;
  std::vector<int> counts;
  for (std::size_t i = 0; i < pictures.Count(); ++i) {
    const EngineResult result = Recognise(pictures.Get(i), settings);
    counts.push_back(static_cast<int>(std::count_if(
        result.boxes.begin(), result.boxes.end(),
        [&](const EngineBox& box) { return box.ch != U' ' && box.x1 - box.x0 == width; })));
  }
  return counts;
}

Result BlockEngine::Teach(const Lesson& lesson) {
  lessons.push_back(lesson);
  return Result::kDone;
}

}  // namespace quillomar::test
