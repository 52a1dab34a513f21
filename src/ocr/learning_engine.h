#pragma once

#include <memory>
#include <string>

#include "ocr/disc_knowledge.h"
#include "ocr/engine.h"
#include "ocr/pattern_database.h"
#include "ocr/recogniser_pool.h"

namespace quillomar {

// The engine: splits pictures into lines and glyphs itself, lets a recogniser read lines, and lets
// equal glyphs of a disc correct each other.
class LearningEngine final : public OcrEngine {
 public:
  LearningEngine(std::unique_ptr<LineRecogniserSource> recognisers, FileSystem& files,
                 Reporter& reporter, const std::string& databaseFolder);

  [[nodiscard]] EngineResult Recognise(const EnginePicture& picture,
                                       const EngineSettings& settings) override;
  [[nodiscard]] std::vector<std::optional<EngineResult>> RecogniseAll(
      const PictureSource& pictures, const EngineSettings& settings,
      const EngineProgress& progress) override;
  void ForgetDisc() override { knowledge_ = {}; }
  [[nodiscard]] std::vector<int> CountAppearances(const Lesson& lesson,
                                                  const PictureSource& pictures,
                                                  const EngineSettings& settings) override;
  Result Teach(const Lesson& lesson) override;

 private:
  [[nodiscard]] std::optional<GlyphPattern> PatternOfLesson(const Lesson& lesson) const;

  Reporter& reporter_;
  RecogniserPool recognisers_;
  PatternDatabase taught_;
  DiscKnowledge knowledge_;
};

}  // namespace quillomar
