#pragma once

#include "ocr/disc_knowledge.h"
#include "ocr/line_text.h"

namespace quillomar {

// Adds to the knowledge what the recogniser read; the spaces are to be settled afterwards.
void LearnText(const LineText& line, DiscKnowledge& knowledge);

}  // namespace quillomar
