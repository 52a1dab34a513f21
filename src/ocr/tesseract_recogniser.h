#pragma once

#include <memory>

#include "ocr/line_recogniser.h"

namespace quillomar {

// Tesseract with the model of the language, where it is installed, else with that of Latin script,
// else with the English one. Null when not even that is installed.
[[nodiscard]] std::unique_ptr<LineRecogniserSource> MakeTesseractSource();

}  // namespace quillomar
