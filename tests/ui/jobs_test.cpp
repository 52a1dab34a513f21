// What the window does while a worker runs.

#include <QAbstractButton>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>

#include "editor/job_labels.h"
#include "ui/progress_window.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class JobsTest : public WindowTest {
 protected:
  // A save that stands still until the gate opens.
  void StartSave() {
    StartOnDisc();
    TheEditor().MoveVertically(4);
    dialogs_.agrees = true;
    files_.gate.Close();
    Key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(TheEditor().Busy());
  }
  bool Drop(const std::string& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&Window(), &enter);
    QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&Window(), &event);
    return enter.isAccepted();
  }
};

TEST_F(JobsTest, ASaveCannotBeStoppedAndClosingWaitsForItsEnd) {
  ASSERT_NO_FATAL_FAILURE(StartSave());
  const int top = Shown().picture.y;
  const ProgressWindow& progress = Window().Progress();
  EXPECT_EQ(progress.windowTitle(), "Saving changes");
  EXPECT_FALSE(Find<QAbstractButton>("abort").isEnabled());
  EXPECT_FALSE(Find<QAbstractButton>("moveUp").isEnabled());
  WaitFor([&] { return progress.windowTitle() == "Saving modifications"; });
  Key(Qt::Key_Escape);
  Window().close();
  Window().close();
  EXPECT_TRUE(Window().isVisible());
  files_.gate.Open();
  WaitFor([this] { return !Window().isVisible(); });
  EXPECT_EQ(dialogs_.questions.size(), 1U);
  EXPECT_TRUE(dialogs_.errors.empty());
  program_.reset();
  StartOnDisc();
  EXPECT_EQ(Shown().picture.y, top);
}

TEST_F(JobsTest, NothingIsDroppedWhileAWorkerRuns) {
  ASSERT_NO_FATAL_FAILURE(StartSave());
  EXPECT_FALSE(Drop(disc_->Path("VTS_01_1.VOB")));
  TheEditor().DropFiles({disc_->Path("VTS_01_0.IFO")});
  TheEditor().OpenRecent(0);
  TheEditor().Run(CommandId::kReloadUnit);
  EXPECT_EQ(dialogs_.questions.size(), 1U);
  files_.gate.Open();
  WaitForIdle();
  EXPECT_TRUE(dialogs_.errors.empty());
  EXPECT_GT(Shown().count, 0);
  EXPECT_TRUE(Drop(disc_->Path("VTS_01_1.VOB")));
  WaitFor([this] { return dialogs_.questions.size() == 2 && !TheEditor().Busy(); });
}

TEST_F(JobsTest, TimeLeftIsToldOnceItIsKnown) {
  using std::chrono::seconds;
  EXPECT_EQ(TimeLeftText(Operation::kSaving, 25, seconds(10)), "About 30 s left");
  EXPECT_EQ(TimeLeftText(Operation::kOcr, 1, seconds(3)), "About 5 min left");
  EXPECT_EQ(TimeLeftText(Operation::kSaving, 0, seconds(10)), "");
  EXPECT_EQ(TimeLeftText(Operation::kScanning, 25, seconds(10)), "");
}

}  // namespace
}  // namespace quillomar::test
