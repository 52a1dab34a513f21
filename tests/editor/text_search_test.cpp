#include "editor/text_search.h"

#include <gtest/gtest.h>

namespace quillomar {
namespace {

TEST(TextSearch, FoldsLettersOfSeveralAlphabetsAndKeepsBrokenBytes) {
  EXPECT_EQ(FoldCase("ÀÖØÞ×ŒŽŸĹİ ΑΩ ЖЁ ẞ AZ[09"), "àöøþ×œžÿĺİ αω жё ẞ az[09");
  EXPECT_EQ(FoldCase("A\xC3"), "a\xC3");
  EXPECT_EQ(FoldCase("\x80\xFF\xC3\xC3\x84"), "\x80\xFF\xC3\xC3\xA4");
}

TEST(TextSearch, LooksAtLinesOneByOne) {
  const std::vector<std::string> lines = {"Where is", "ÉMILE?"};
  EXPECT_TRUE(TextSearch("émile", false).FoundIn(lines));
  EXPECT_FALSE(TextSearch("émile", true).FoundIn(lines));
  EXPECT_FALSE(TextSearch("is É", false).FoundIn(lines));
  EXPECT_FALSE(TextSearch("", false).FoundIn(lines));
  EXPECT_TRUE(HoldsAnyOf(lines, "xÉ"));
  EXPECT_FALSE(HoldsAnyOf(lines, "é"));
  EXPECT_FALSE(HoldsAnyOf(lines, "ÈÊ"));
}

}  // namespace
}  // namespace quillomar
