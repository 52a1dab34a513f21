#pragma once

#include "author/spu_builder.h"
#include "ocr/hearing_impaired.h"
#include "spu/parse.h"
#include "support/block_engine.h"
#include "support/message_collector.h"

namespace quillomar::test {

using namespace author;

// Units in block script and what is needed to read them.
class OcrTest : public testing::Test {
 protected:
  SubpictureUnit Unit(std::vector<std::string> rows) {
    SubpictureUnit unit = MakeUnit(BuildSpu(Subtitle(std::move(rows), 60, 300, 90)));
    unit.state.freeRoom = 2000;
    EXPECT_FALSE(Failed(ParseControlSequences(unit, 0, 0, context_)));
    return unit;
  }
  SubpictureUnit TextUnit(const std::vector<std::string>& lines, float slant = 0) {
    return Unit(DrawBlocks(lines, slant));
  }
  OcrTools Tools(OcrEngine& engine) {
    return {engine, {}, remembered_, [](const SubpictureUnit&) { return "en"; }, context_};
  }
  OcrTools Tools() { return Tools(engine_); }

  MessageCollector messages_;
  ReportLimit limit_{messages_.reporter};
  SpuContext context_{messages_.reporter, limit_, VideoStandard::kPal};
  BlockEngine engine_;
  int remembered_ = kNoTextTypeYet;
};

}  // namespace quillomar::test
