#pragma once

#include <string>
#include <vector>

#include "ocr/engine.h"

// A script of solid blocks, and an engine that reads it without a mistake: every character is a
// block of a width of its own.
namespace quillomar::test {

inline constexpr int kBlockHeight = 10;
inline constexpr int kBlockPitch = 16;  // from line to line
inline constexpr int kBlockMargin = 40;

// Rows of digits, background '0' and text '1', all lines beginning at the left margin; the slant is
// of columns per row around each line's last row.
std::vector<std::string> DrawBlocks(const std::vector<std::string>& lines, float slant = 0);

class BlockEngine final : public OcrEngine {
 public:
  explicit BlockEngine(float slant = 0) : slant_(slant) {}

  EngineResult Recognise(const EnginePicture& picture, const EngineSettings& settings) override;
  std::vector<std::optional<EngineResult>> RecogniseAll(const PictureSource& pictures,
                                                        const EngineSettings& settings,
                                                        const EngineProgress& progress) override;
  void ForgetDisc() override {}
  std::vector<int> CountAppearances(const Lesson& lesson, const PictureSource& pictures,
                                    const EngineSettings& settings) override;
  Result Teach(const Lesson& lesson) override;

  int picturesRead = 0;
  std::vector<Lesson> lessons;

 private:
  float slant_;
};

}  // namespace quillomar::test
