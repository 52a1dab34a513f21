#include "settings/ini_file.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace quillomar {
namespace {

constexpr std::string_view kFile =
    "; of the whole file\r\n"
    "stray=1\r\n"
    "[Other]\r\n"
    "Key=other\r\n"
    "\r\n"
    "[My Section]\r\n"
    "; Key=comment\r\n"
    "KEY = \" two words \"  \r\n"
    "single='x'\r\n"
    "half=\"x\r\n"
    "empty=\r\n"
    "no equals sign\r\n"
    "key=second\r\n"
    "\r\n"
    "[my section]\r\n"
    "late=1\r\n"
    "[open\r\n";

TEST(IniText, ReadsKeysOfOneSection) {
  const IniText ini(kFile);
  EXPECT_EQ(ini.Get("MY SECTION", "key"), " two words ");
  EXPECT_EQ(ini.Get("My Section", "single"), "x");
  EXPECT_EQ(ini.Get("My Section", "half"), "\"x");
  EXPECT_EQ(ini.Get("My Section", "empty"), "");
  EXPECT_EQ(ini.Get("Other", "key"), "other");
  for (const char* missing : {"stray", "late", "no equals sign", ""}) {
    EXPECT_EQ(ini.Get("My Section", missing), std::nullopt) << missing;
  }
  EXPECT_EQ(ini.Get("open", "late"), std::nullopt);
}

TEST(IniText, ChangesOneLineOnly) {
  IniText ini(kFile);
  ini.Set("my section", "SINGLE", "y");
  std::string wanted(kFile);
  wanted.replace(wanted.find("'x'"), 3, "y");
  EXPECT_EQ(ini.Text(), wanted);
  ini.Set("my section", "key", " two words ");  // as it reads already
  EXPECT_EQ(ini.Text(), wanted);
  ini.Set("my section", "new", "1");
  wanted.insert(wanted.find("\r\n\r\n[my section]") + 2, "new=1\r\n");
  EXPECT_EQ(ini.Text(), wanted);
}

TEST(IniText, AddsSectionsAndClosesLastLine) {
  IniText ini("[a]\nb=1");
  ini.Set("c", "d", "one\nevil=2");
  EXPECT_EQ(ini.Text(), "[a]\nb=1\n[c]\nd=one\n");
  ini.Set("a", "b", "2");
  ini.Set("a", "e", "");
  EXPECT_EQ(ini.Text(), "[a]\nb=2\ne=\n[c]\nd=one\n");
}

TEST(IniText, ReadsBackWhatWasSet) {
  for (const char* const value : {"\"two words\"", "'x'", " x", "x ", "\"", "-a \"b c\"", ""}) {
    IniText ini("");
    ini.Set("s", "k", "before");
    ini.Set("s", "k", value);
    EXPECT_EQ(IniText(ini.Text()).Get("s", "k"), value);
  }
}

TEST(IniText, KeepsByteOrderMark) {
  IniText ini("\xEF\xBB\xBF[a]\nk=\xC3\xA4\n");
  EXPECT_EQ(ini.Get("a", "k"), "\xC3\xA4");
  ini.Set("a", "k", "2");
  EXPECT_EQ(ini.Text(), "\xEF\xBB\xBF[a]\nk=2\n");
}

TEST(StoreIni, KeepsTheOldFileUntilTheNewOneIsWhole) {
  const Bytes old = {'[', 'a', ']', '\n'};
  for (int failing = 0; failing < 2; ++failing) {
    test::MemoryFileSystem files;
    files.Put("/s.ini", old);
    IniText ini("[a]\nk=1\n");
    if (failing == 0) files.FailWritesFrom(0);
    if (failing == 1) files.SetReadOnly("/s.ini");
    EXPECT_EQ(StoreIni(files, "/s.ini", ini), Result::kFailed);
    EXPECT_EQ(files.Content("/s.ini"), old);
    EXPECT_EQ(files.List("/"), std::vector<std::string>{"s.ini"});
  }
}

TEST(LoadIni, TellsMissingFromUnreadable) {
  test::MemoryFileSystem files;
  const auto missing = LoadIni(files, "/s.ini");
  ASSERT_TRUE(missing);
  EXPECT_EQ(missing->Text(), "");
  files.Put("/s.ini", Bytes((1 << 20) + 1, 'x'));
  EXPECT_FALSE(LoadIni(files, "/s.ini"));
}

}  // namespace
}  // namespace quillomar
