#include "ocr/engine.h"

namespace quillomar {

std::unique_ptr<OcrEngine> MakeOcrEngine(FileSystem& /*files*/, Reporter& reporter,
                                         const std::string& /*databaseFolder*/) {
  reporter.LogLine("There is no OCR engine in this build");
  return nullptr;
}

}  // namespace quillomar
