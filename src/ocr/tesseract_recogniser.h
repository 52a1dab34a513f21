#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ocr/line_recogniser.h"

namespace quillomar {

using ModelMessage = std::function<void(const std::string&)>;

// Tesseract with the model of the language, where it is installed, else with that of Latin script,
// else with the English one, else with any; `tell` is called, by any thread, the first time that a
// language has to do without its own. Null when no model at all is installed.
[[nodiscard]] std::unique_ptr<LineRecogniserSource> MakeTesseractSource(ModelMessage tell = {});

}  // namespace quillomar
