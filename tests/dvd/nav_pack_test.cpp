#include "dvd/nav_pack.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dvd/big_endian.h"
#include "support/pack_builder.h"

namespace quillomar {
namespace {

using Statuses = std::vector<std::uint16_t>;

Button WideButton() {
  return {.colourNumber = 3,
          .autoAction = true,
          .x = 719,
          .y = 1000,
          .width = 304,
          .height = 23,
          .up = 36,
          .down = 1,
          .left = 63,
          .right = 2};
}

TEST(NavPack, ReadsTimesAndPlace) {
  const Sector sector = test::MakeNavPack({.startTime = 0x89ABCDEF,
                                           .endTime = 0xFEDCBA98,
                                           .vcid = {0x1234, 0x56},
                                           .category = 0x4000,
                                           .buttonCount = 2});
  const NavPack nav = ParseNavPack(sector);
  EXPECT_EQ(nav.startTime, 0x89ABCDEFU);
  EXPECT_EQ(nav.endTime, 0xFEDCBA98U);
  EXPECT_EQ(nav.vcid, (Vcid{0x1234, 0x56}));
  EXPECT_TRUE(nav.interleaved);
  EXPECT_EQ(nav.buttonCount, 2);
  EXPECT_FALSE(nav.highlight);
}

TEST(NavPack, ReadsANewHighlightWithAllItsButtons) {
  Highlight highlight;
  highlight.colours[0] = {0, 1, 2, 3, 15, 14, 13, 12, 4, 5, 6, 7, 8, 9, 10, 11};
  highlight.colours[2].fill(9);
  highlight.buttons.assign(kMaxButtons, {.colourNumber = 1, .x = 1, .y = 2, .width = 3});
  highlight.buttons.back() = WideButton();
  const NavPack nav = ParseNavPack(test::MakeNavPack({.highlight = highlight}));
  EXPECT_FALSE(nav.interleaved);
  EXPECT_EQ(nav.buttonCount, kMaxButtons);
  ASSERT_TRUE(nav.highlight);
  EXPECT_EQ(*nav.highlight, highlight);
}

TEST(NavPack, KeepsButtonsInBounds) {
  Sector sector = test::MakeNavPack({.highlight = Highlight{.buttons = {WideButton()}}});
  sector[kNavButtonCountOffset] = 255;
  // An end before the start, as no author writes it.
  sector[kNavButtonsOffset + 1] = 0;
  sector[kNavButtonsOffset + 2] = 0;
  const NavPack nav = ParseNavPack(sector);
  EXPECT_EQ(nav.buttonCount, kMaxButtons);
  ASSERT_EQ(nav.highlight->buttons.size(), 36U);
  EXPECT_EQ(nav.highlight->buttons[0].width, 0);
}

TEST(NavPack, TakesOnlyStatusOneForANewHighlight) {
  Sector sector = test::MakeNavPack({.highlight = Highlight{.buttons = {WideButton()}}});
  for (const std::uint16_t status : Statuses{0, 2, 3, 0x101}) {
    PutShort(sector, kNavHighlightStatusOffset, status);
    EXPECT_FALSE(ParseNavPack(sector).highlight) << status;
  }
}

TEST(NavPack, CopiesTheSearchInformationExactly) {
  Sector sector{};
  sector[kNavSearchInfoOffset - 1] = 1;
  sector[kNavSearchInfoOffset] = 2;
  sector[kNavSearchInfoOffset + kNavSearchInfoSize - 1] = 3;
  sector[kNavSearchInfoOffset + kNavSearchInfoSize] = 4;
  const SearchInfo info = CopySearchInfo(sector);
  EXPECT_EQ(info.front(), 2);
  EXPECT_EQ(info.back(), 3);
}

}  // namespace
}  // namespace quillomar
