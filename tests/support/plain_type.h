#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "ocr/line_recogniser.h"

// Type whose letters are frames, each of a size of its own, and a recogniser that knows it by these
// sizes.
namespace quillomar::test {

inline constexpr int kTypeXHeight = 10;
inline constexpr int kTypePitch = 24;  // from baseline to baseline
inline constexpr int kTypeFirstBaseline = 20;
inline constexpr int kTypeMargin = 12;
inline constexpr int kTypeGap = 3;  // between letters; words stand 10 apart

// Of the letters a, o, n, m, b, d, X, the full stop and blanks.
EnginePicture SetInPlainType(const std::vector<std::string>& lines, double slant = 0);

// What the recogniser does to its readings of a line before it gives them away.
using ReadingFault = std::function<void(std::vector<Reading>&)>;

class PlainTypeSource final : public LineRecogniserSource {
 public:
  explicit PlainTypeSource(ReadingFault fault, std::atomic<int>* linesRead = nullptr)
      : fault_(std::move(fault)), linesRead_(linesRead) {}
  std::unique_ptr<LineRecogniser> Make(const std::string& language) override;

 private:
  ReadingFault fault_;
  std::atomic<int>* linesRead_;
};

class Pictures final : public PictureSource {
 public:
  explicit Pictures(std::vector<EnginePicture> pictures) : pictures_(std::move(pictures)) {}
  [[nodiscard]] std::size_t Count() const override { return pictures_.size(); }
  [[nodiscard]] EnginePicture Get(std::size_t index) const override { return pictures_[index]; }

 private:
  std::vector<EnginePicture> pictures_;
};

}  // namespace quillomar::test
