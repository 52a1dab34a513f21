#include "editor/text_output.h"

#include "support/unit_test.h"

namespace quillomar {
namespace {

class SrtTest : public test::UnitTest {
 protected:
  UnitPointer Unit(int number, std::vector<std::string> text, std::uint16_t alpha = 15,
                   bool stops = true) {
    auto description = author::Subtitle({"0110", "0220", "0330", "0000"}, 100, 400, 88);
    description.sequences[0].commands = {{kStart},
                                         author::ColourCommand({0, 1, 2, 3}),
                                         author::ContrastCommand({0, alpha, alpha, alpha})};
    if (!stops) description.sequences.resize(1);
    auto unit = std::make_shared<SubpictureUnit>(Parsed(description));
    unit->number = number;
    unit->globalTime = std::int64_t{90090} * number;
    unit->ocrText = std::move(text);
    return unit;
  }
};

TEST_F(SrtTest, NumbersHaveGapsAndTextEndsAtTheFirstEmptyLine) {
  const UnitList units = {Unit(1, {"- Hi", "there", "", "lost"}), Unit(2, {}), Unit(3, {"x"}, 0),
                          Unit(4, {"\xC3\xA4"}, 15, false)};
  EXPECT_EQ(SrtText(units, ntsc_),
            "1\n00:00:01,000 --> 00:00:02,033\n- Hi\nthere\n\n"
            "4\n00:00:04,000 --> ?\n\xC3\xA4\n\n");
  EXPECT_TRUE(units[0]->pixels.empty());
  EXPECT_TRUE(messages_.errors.empty());
}

TEST_F(SrtTest, TargetThatCannotBeOpenedIsReported) {
  test::MemoryFileSystem files;
  EXPECT_FALSE(Failed(WriteTextFile(files, messages_.reporter, "/o.txt", "a\n")));
  EXPECT_EQ(files.Content("/o.txt"), (Bytes{'a', '\n'}));
  files.SetReadOnly("/o.txt");
  EXPECT_TRUE(Failed(WriteTextFile(files, messages_.reporter, "/o.txt", "b\n")));
  EXPECT_EQ(messages_.errors, std::vector<std::string>{"Couldn't open file for writing!"});
}

}  // namespace
}  // namespace quillomar
