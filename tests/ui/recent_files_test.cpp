// The recent files of the File menu.

#include <QAction>
#include <QFile>

#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class RecentMenuTest : public WindowTest {
 protected:
  QAction& Entry(int n) { return *Window().findChild<QAction*>(QString("recentFile%1").arg(n)); }
  // The entry is that of the one title VOB of a disc.
  void ExpectEntry(int n, const DiscCopy& disc) {
    const std::string folder = disc.Folder().substr(disc.Folder().rfind('/'));
    const QString ending = QString::fromStdString(folder + "/VTS_01_1.VOB ");
    EXPECT_TRUE(Entry(n).text().endsWith(ending)) << Entry(n).text().toStdString();
  }
};

TEST_F(RecentMenuTest, AnEntryOpensItsFilesWithoutAScan) {
  const DiscCopy pal("pal");
  Start({});
  EXPECT_FALSE(Entry(0).isVisible());
  StartOnDisc();
  const int count = Shown().count;
  ExpectEntry(0, *disc_);
  EXPECT_FALSE(Entry(1).isVisible());

  TheEditor().OpenFiles({pal.TitleVobs().front()}, false);
  WaitForIdle();
  ExpectEntry(0, pal);
  EXPECT_TRUE(Entry(0).isEnabled());

  files_.gate.Close();
  Entry(1).trigger();
  EXPECT_TRUE(TheEditor().Busy());
  EXPECT_FALSE(Entry(1).isEnabled());
  files_.gate.Open();
  WaitForIdle();
  EXPECT_EQ(Shown().count, count);
  ExpectEntry(0, *disc_);
  ExpectEntry(1, pal);
  EXPECT_TRUE(dialogs_.questions.empty());

  QFile::remove(QString::fromStdString(pal.TitleVobs().front()));
  Entry(1).trigger();
  EXPECT_EQ(dialogs_.errors.size(), 1U);
  EXPECT_FALSE(Entry(1).isVisible());
}

}  // namespace
}  // namespace quillomar::test
