#pragma once

#include <gtest/gtest.h>

#include "disc/ffmpeg_subtitles.h"
#include "disc/open_disc.h"

namespace quillomar::test {

// Tests on a copy of the authored disc that the parameter names.
class DiscTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc = std::make_unique<DiscCopy>(GetParam());
    vobs = disc->TitleVobs();
  }

  std::unique_ptr<DiscCopy> disc;
  std::vector<std::string> vobs;
};

// Names an instance by its disc.
inline std::string DiscName(const testing::TestParamInfo<const char*>& instance) {
  return instance.param;
}

}  // namespace quillomar::test
