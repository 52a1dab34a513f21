#pragma once

#include "ocr/hearing_impaired.h"
#include "support/block_engine.h"
#include "support/unit_test.h"

namespace quillomar::test {

// Units in block script and what is needed to read them.
class OcrTest : public UnitTest {
 protected:
  SubpictureUnit Unit(std::vector<std::string> rows) {
    return Parsed(Subtitle(std::move(rows), 60, 300, 90), 2000);
  }
  SubpictureUnit TextUnit(const std::vector<std::string>& lines, float slant = 0) {
    return Unit(DrawBlocks(lines, slant));
  }
  OcrTools Tools(OcrEngine& engine) {
    return {engine, {}, remembered_, [](const SubpictureUnit&) { return "en"; }, context_};
  }
  OcrTools Tools() { return Tools(engine_); }

  BlockEngine engine_;
  int remembered_ = kNoTextTypeYet;
};

}  // namespace quillomar::test
