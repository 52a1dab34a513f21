#include "settings/ini_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/platform.h"
#include "support/memory_files.h"

namespace quillomar {
namespace {

TEST(IniText, ReadsKeysOfOneSection) {
  const IniText ini(
      "\xEF\xBB\xBF[My Section]\r\n; Key=comment\r\nKEY = \" two words \"  \r\nsingle='x'\r\n"
      "half=\"x\r\nempty=\r\nno equals sign\r\nkey=second\r\n"
      "[Other]\r\nKey=other\r\n[my section]\r\nlate=1\r\n[open\r\n");
  const std::vector<std::pair<const char*, std::optional<std::string>>> values = {
      {"key", " two words "}, {"single", "x"},        {"half", "\"x"},
      {"empty", ""},          {"late", std::nullopt}, {"no equals sign", std::nullopt},
      {"", std::nullopt},     {"; Key", std::nullopt}};
  for (const auto& [key, value] : values) EXPECT_EQ(ini.Get("MY SECTION", key), value) << key;
  EXPECT_EQ(ini.Get("Other", "key"), "other");
  EXPECT_EQ(ini.Get("open", "late"), std::nullopt);
}

TEST(IniText, ChangesOneLineOnly) {
  struct Case {
    std::string before, key, value, after;
  };
  const std::vector<Case> cases = {
      {"; \r\n[A]\r\nk='x'\r\n\r\n", "K", "y", "; \r\n[A]\r\nk=y\r\n\r\n"},
      {"[a]\nk= ' two '\n", "k", " two ", "[a]\nk= ' two '\n"},  // as it reads already
      {"[a]\r\nb=1\r\n\r\n[c]\r\nk=9", "k", "2", "[a]\r\nb=1\r\nk=2\r\n\r\n[c]\r\nk=9"},
      {"[c]\nb=1", "k", "one\nevil=2", "[c]\nb=1\n[a]\nk=one\n"},
      {"[a]\n[c]\n", "k", "", "[a]\nk=\n[c]\n"},
      {"\xEF\xBB\xBF[a]\nk=\xC3\xA4", "k", "2", "\xEF\xBB\xBF[a]\nk=2"},
      {"", "k", "\"two words\"", "[a]\nk=\"\"two words\"\"\n"},
      {"", "k", "'x'", "[a]\nk=\"'x'\"\n"},
      {"", "k", "x ", "[a]\nk=\"x \"\n"},
      {"", "k", "\"", "[a]\nk=\"\n"},
      {"", "k", "-a \"b c\"", "[a]\nk=-a \"b c\"\n"}};
  for (const Case& each : cases) {
    IniText ini(each.before);
    ini.Set("a", each.key, each.value);
    EXPECT_EQ(ini.Text(), each.after);
    const std::string oneLine = each.value.substr(0, each.value.find('\n'));
    EXPECT_EQ(IniText(ini.Text()).Get("A", "k"), oneLine);
  }
}

TEST(StoreIni, KeepsTheOldFileUntilTheNewOneIsWhole) {
  test::MemoryFileSystem files;
  EXPECT_EQ(LoadIni(files, "/s.ini")->Text(), "");
  for (const bool readOnly : {false, true}) {
    files.Put("/s.ini", {'x'});
    if (readOnly) files.SetReadOnly("/s.ini");
    files.FailWritesFrom(readOnly ? -1 : 0);
    EXPECT_EQ(StoreIni(files, "/s.ini", IniText("[a]\nk=1\n")), Result::kFailed);
    EXPECT_EQ(files.Content("/s.ini"), Bytes{'x'});
    EXPECT_EQ(files.List("/"), std::vector<std::string>{"s.ini"});
  }
  files.Put("/s.ini", Bytes((1 << 20) + 1, 'x'));
  EXPECT_FALSE(LoadIni(files, "/s.ini"));
}

TEST(StoreIni, FollowsALinkToAFileKeptElsewhere) {
  const auto disk = MakeDiskFileSystem();
  const std::string kept = testing::TempDir() + "/kept.ini";
  const std::string link = testing::TempDir() + "/link.ini";
  std::filesystem::remove(link);
  ASSERT_NE(disk->Open(kept, OpenMode::kCreate), nullptr);
  std::filesystem::create_symlink(kept, link);
  EXPECT_EQ(StoreIni(*disk, link, IniText("[a]\nk=1\n")), Result::kDone);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(LoadIni(*disk, kept)->Get("a", "k"), "1");
}

}  // namespace
}  // namespace quillomar
