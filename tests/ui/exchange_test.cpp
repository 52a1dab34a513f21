// Subpictures as files of their own: bitmaps, the external editor, .sup files, texts.

#include <QComboBox>
#include <QMenu>
#include <QTextEdit>
#include <QTimer>
#include <fstream>

#include "ui/window_test.h"

namespace quillomar::test {
namespace {

// Places in the list: a bitmap of one short line, and one that has room for it.
constexpr int kShort = 5;
constexpr int kLong = 2;

class ExchangeTest : public WindowTest {
 protected:
  // Saves the current subpicture and gives the file's first two bytes.
  std::string SavedAs(const std::string& name, int filter) {
    dialogs_.files = {disc_->Path(name)};
    dialogs_.filterIndex = filter;
    TheEditor().Run(CommandId::kSaveBitmap);
    const Bytes bytes = FileBytes(disc_->Path(name));
    return bytes.size() < 2 ? "" : std::string(bytes.begin(), bytes.begin() + 2);
  }

  // The subpicture is that of another place; its area is now tight around the content.
  void ExpectLike(const SubpicturePicture& other) {
    EXPECT_NEAR(Shown().picture.x, other.x, 1);
    EXPECT_NEAR(Shown().picture.width, other.width, 2);
  }

  // A tool that, once the file "wait" is gone, puts "short.bmp" in place of what it is given.
  std::string MakeTool() {
    std::string path = disc_->Path("my tool.sh");
    std::ofstream(path) << "#!/bin/sh\n"
                           "while [ -e '"
                        << disc_->Path("wait")
                        << "' ]; do sleep 0.02; done\n"
                           "[ \"$1\" = 'two words' ] && cp '"
                        << disc_->Path("short.bmp") << "' \"$2\"\n";
    QFile::setPermissions(QString::fromStdString(path),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
  }

  // As soon as the window waits for the tool: keys and closing do nothing. Then lets the tool end.
  void TryTheWaitingWindow() {
    if (Window().isEnabled()) {
      QTimer::singleShot(1, [this] { TryTheWaitingWindow(); });
      return;
    }
    EXPECT_EQ(Find<QComboBox>("clutChoice").currentIndex(), 1) << "two types look alike";
    const int index = Shown().index;
    Key(Qt::Key_End);
    Window().close();
    EXPECT_EQ(Shown().index, index);
    EXPECT_TRUE(Window().isVisible());
    QFile::remove(QString::fromStdString(disc_->Path("wait")));
  }
};

TEST_F(ExchangeTest, BitmapsAreSavedTakenBackAndEditedWithATool) {
  StartOnDisc();
  Settings().warnOnBitmapImport = 0;
  TheEditor().GoTo(kShort);
  EXPECT_EQ(SavedAs("short.ppm", 2), "P6");
  const Bytes ppm = FileBytes(disc_->Path("short.ppm"));
  const Rgb corner = Shown().swatches[kBackground].colour;
  EXPECT_EQ(Rgb({ppm.end()[-3], ppm.end()[-2], ppm.end()[-1]}), corner) << "as it is shown";
  EXPECT_EQ(Settings().bitmapSaveType, 2);
  EXPECT_EQ(SavedAs("short.bmp", 1), "BM");
  EXPECT_TRUE(dialogs_.requests.back().forSaving);
  const SubpicturePicture other = Shown().picture;
  TheEditor().GoTo(kLong);
  dialogs_.files = {disc_->Path("short.bmp")};
  TheEditor().Run(CommandId::kReplaceBitmap);
  ExpectLike(other);
  EXPECT_NE(Shown().infoRtf.find("Modified"), std::string::npos);

  Key(Qt::Key_Z, Qt::ControlModifier);
  Settings().bitmapToolPath = MakeTool();
  Settings().bitmapToolArguments = "\"two words\"";
  std::ofstream(disc_->Path("wait")) << "until the window was tried";
  TryTheWaitingWindow();
  Key(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(Window().isEnabled());
  EXPECT_EQ(Find<QComboBox>("clutChoice").currentIndex(), 0);
  EXPECT_EQ(Shown().index, kLong);
  ExpectLike(other);
  EXPECT_TRUE(dialogs_.errors.empty());

  Settings().bitmapToolPath = disc_->Path("no such tool");
  TheEditor().Run(CommandId::kEditBitmap);
  ASSERT_EQ(dialogs_.errors.size(), 1U);
  EXPECT_NE(dialogs_.errors[0].find("no such tool"), std::string::npos);
  EXPECT_TRUE(Window().isEnabled());
}

TEST_F(ExchangeTest, AStreamIsSavedAsSupAndOpenedAgain) {
  StartOnDisc();
  TheEditor().Run(CommandId::kSaveSup);
  ASSERT_EQ(dialogs_.errors.size(), 1U);
  TheEditor().ChooseStream(1);
  const View vob = Shown();
  const std::string sup = disc_->Path("stream.sup");
  dialogs_.files = {sup};
  TheEditor().Run(CommandId::kSaveSup);
  Settings().askForIfos = 0;
  Key(Qt::Key_U, Qt::ControlModifier);
  EXPECT_EQ(Window().windowTitle().toStdString(), sup);
  EXPECT_EQ(Shown().count, vob.count);
  EXPECT_FALSE(IsEnabled("clutChoice"));
  dialogs_.files = {disc_->Path("VTS_01_0.IFO")};
  dialogs_.item = 0;
  Key(Qt::Key_J, Qt::ControlModifier);
  EXPECT_EQ(dialogs_.requests.back().folder, disc_->Path(""));
  EXPECT_EQ(Shown().picture.rgba, vob.picture.rgba);
  dialogs_.files = {sup};
  Key(Qt::Key_J, Qt::ControlModifier);
  EXPECT_EQ(dialogs_.errors.size(), 2U);
  EXPECT_TRUE(TheEditor().Doc().Ifo().Loaded()) << "the colors shown are still those of a file";
  Window().close();
  program_.reset();

  dialogs_.files.clear();
  Start({sup});
  EXPECT_EQ(Shown().count, vob.count);
  EXPECT_EQ(dialogs_.errors.size(), 2U);
}

TEST_F(ExchangeTest, ARightClickOnTheInformationSavesThatOfAll) {
  StartOnDisc();
  auto& menu = Find<QMenu>("commandDisplayMenu");
  emit Find<QTextEdit>("infoPane").customContextMenuRequested({5, 5});
  EXPECT_TRUE(menu.isVisible());
  EXPECT_EQ(menu.title(), "Command display");
  dialogs_.files = {disc_->Path("info.txt")};
  menu.actions().back()->trigger();
  menu.close();
  EXPECT_FALSE(FileBytes(disc_->Path("info.txt")).empty());
}

}  // namespace
}  // namespace quillomar::test
