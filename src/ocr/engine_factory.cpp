#include "ocr/engine.h"
#include "ocr/learning_engine.h"
#include "ocr/tesseract_recogniser.h"

namespace quillomar {

std::unique_ptr<OcrEngine> MakeOcrEngine(FileSystem& files, Reporter& reporter,
                                         const std::string& databaseFolder) {
  auto recognisers = MakeTesseractSource(
      [&reporter](const std::string& message) { reporter.ReportError(message); });
  if (!recognisers) {
    reporter.LogLine("OCR needs a language model of Tesseract (Debian: tesseract-ocr-eng)");
    return nullptr;
  }
  return std::make_unique<LearningEngine>(std::move(recognisers), files, reporter, databaseFolder);
}

}  // namespace quillomar
