#include "bitmap/type_colours.h"

#include <gtest/gtest.h>

namespace quillomar {
namespace {

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kGrey{127, 128, 100};

TEST(TypeColours, AutomaticColoursDifferWhateverTheDefaults) {
  const std::vector<Rgb> choices = {kBlack, kWhite, kGrey, {40, 40, 40}, {215, 215, 215}};
  for (std::size_t i = 0; i < 625; ++i) {
    const TypeColours defaults = {choices[i % 5], choices[i / 5 % 5], choices[i / 25 % 5],
                                  choices[i / 125]};
    const TypeColours colours = AutomaticColours(defaults);
    EXPECT_TRUE(TypesOfEqualColour(colours).empty()) << i;
    EXPECT_EQ(colours[0], defaults[0]);
    if (TypesOfEqualColour(defaults).empty()) {
      EXPECT_EQ(colours, defaults);
    }
  }
}

TEST(TypeColours, EqualClutColoursGiveWayToAutomaticOnes) {
  ClutRecord clut;
  clut.entries.fill({16, 128, 128});
  for (std::uint8_t i = 0; i < 3; ++i) {
    clut.entries.at(i) = {static_cast<std::uint8_t>(60 + 60 * i), 128, 128};
  }
  const TypeColours defaults = {kBlack, kWhite, kBlack, kWhite};
  SubpictureUnit unit;
  unit.currentColours = {2, 1, 0, 15};
  const auto chosen = ColoursForExchange(unit, &clut, defaults, PaletteChoice::kIfo);
  EXPECT_EQ(chosen.colours[1], ToRgb(clut.entries[1]));
  EXPECT_EQ(chosen.colours[3], ToRgb(clut.entries[15]));
  EXPECT_FALSE(chosen.replaced);

  unit.currentColours = {14, 1, 0, 15};
  EXPECT_EQ(TypesOfEqualColour(*ClutColours(unit, &clut)), (std::vector<int>{0, 3}));
  const auto replaced = ColoursForExchange(unit, &clut, defaults, PaletteChoice::kIfo);
  EXPECT_EQ(replaced.colours, AutomaticColours(defaults));
  EXPECT_TRUE(replaced.replaced);

  // Nothing is replaced where the CLUT was not asked for or there is none.
  EXPECT_FALSE(ColoursForExchange(unit, &clut, defaults, PaletteChoice::kAutomatic).replaced);
  EXPECT_FALSE(ColoursForExchange(unit, nullptr, defaults, PaletteChoice::kIfo).replaced);
  unit.currentColours.reset();
  EXPECT_EQ(ClutColours(unit, &clut), std::nullopt);
}

TEST(TypeColours, TheLowerOfTwoTypesEquallyNearWins) {
  const TypeColours colours = {Rgb{0, 0, 0}, Rgb{20, 0, 0}, Rgb{0, 0, 200}, Rgb{0, 0, 200}};
  EXPECT_EQ(NearestType(colours, {10, 0, 0}), 0);
  EXPECT_EQ(NearestType(colours, {11, 0, 0}), 1);
  EXPECT_EQ(NearestType(colours, {0, 0, 255}), 2);
}

}  // namespace
}  // namespace quillomar
