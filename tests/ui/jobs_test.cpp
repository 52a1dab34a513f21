// What the window does while a worker runs.

#include <QAction>
#include <QFile>

#include "editor/job_labels.h"
#include "support/block_engine.h"
#include "ui/progress_window.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

struct Job {
  const char* title;  // of the progress window while it begins
  std::function<void(Editor&)> start;
};

const std::vector<Job>& Jobs() {
  static const std::vector<Job> jobs = {
      {"Scanning VOB file(s)", [](Editor& editor) { editor.Run(CommandId::kOpenVobs); }},
      {"Loading file(s) from MRU", [](Editor& editor) { editor.OpenRecent(0); }},
      {"Saving changes", [](Editor& editor) { editor.Run(CommandId::kSaveAll); }},
      {"Reverting changes", [](Editor& editor) { editor.Run(CommandId::kReloadAll); }},
      {"Applying modifications",
       [](Editor& editor) { editor.ApplyToAll(ChoicesOf(editor.Last())); }},
      {"ReTiming subpics", [](Editor& editor) { editor.Retime(editor.Doc().Units(), 1); }},
      {"Running OCR", [](Editor& editor) { editor.Run(CommandId::kOcrSelected); }},
      {"Erasing Hearing-Impaired subpics",
       [](Editor& editor) { editor.Run(CommandId::kHideHearingImpairedAll); }},
  };
  return jobs;
}

class JobsTest : public WindowTest {
 protected:
  // A job on a changed disc. It counts as running until events are taken again.
  void StartJob(const Job& job) {
    dialogs_.agrees = true;
    ASSERT_NO_FATAL_FAILURE(StartOnDisc());
    Settings().warnIfOnly4x3 = 0;
    TheEditor().Context().makeOcrEngine = [] { return std::make_unique<BlockEngine>(); };
    TheEditor().MoveVertically(4);
    dialogs_.files = {disc_->Path("VTS_01_1.VOB")};
    TheEditor().Context().fastOpen = FastOpen::kNever;
    job.start(TheEditor());
    ASSERT_TRUE(TheEditor().Busy());
    EXPECT_EQ(Window().Progress().windowTitle(), job.title);
  }
};

TEST_F(JobsTest, NothingIsDroppedAndClosingWaitsWhileAWorkerRuns) {
  for (const Job& job : Jobs()) {
    SCOPED_TRACE(job.title);
    ASSERT_NO_FATAL_FAILURE(StartJob(job));
    EXPECT_FALSE(IsEnabled("linesUp") || IsEnabled("saveAllButton"));
    const auto questions = dialogs_.questions.size();
    EXPECT_FALSE(Drop(disc_->Path("VTS_01_1.VOB")));
    TheEditor().DropFiles({disc_->Path("VTS_01_0.IFO")});
    TheEditor().OpenRecent(0);
    TheEditor().Run(CommandId::kReloadUnit);
    Window().close();
    Window().close();
    EXPECT_TRUE(Window().isVisible() && TheEditor().Busy());
    EXPECT_EQ(dialogs_.questions.size(), questions);
    WaitFor([this] { return !Window().isVisible(); });
    EXPECT_FALSE(TheEditor().Busy());
    EXPECT_EQ(dialogs_.errors, std::vector<std::string>());
    program_.reset();
    QFile::remove(QString::fromStdString(disc_->Path("QuillomarLastFile0.txt")));
  }
}

TEST_F(JobsTest, AScanCanBeStoppedAndASaveCannot) {
  StartJob(Jobs().front());
  TheEditor().Run(CommandId::kOpenVobs);
  WaitForIdle();
  EXPECT_FALSE(TheEditor().Doc().Results().complete);
  EXPECT_FALSE(Window().Progress().isVisible());
  EXPECT_TRUE(Window().acceptDrops());
  program_.reset();

  StartOnDisc();
  TheEditor().MoveVertically(4);
  const int top = Shown().picture.y;
  Press("saveAllButton");
  EXPECT_FALSE(IsEnabled("abort"));
  TheEditor().Run(CommandId::kAbort);
  WaitForIdle();
  program_.reset();
  StartOnDisc();
  EXPECT_EQ(Shown().picture.y, top);
}

TEST_F(JobsTest, AWorkersMessageIsShownByTheWindowsThread) {
  Start({});
  QtJobRunner runner;
  bool finished = false;
  runner.Run([this] { TheEditor().Context().reporter.ReportError("from the worker"); },
             [&] { finished = true; });
  WaitFor([&] { return finished; });
  EXPECT_EQ(dialogs_.errors, std::vector<std::string>{"from the worker"});
  EXPECT_EQ(dialogs_.errorThread, std::this_thread::get_id());
}

TEST_F(JobsTest, TimeLeftIsToldOnceItIsKnown) {
  using std::chrono::seconds;
  EXPECT_EQ(TimeLeftText(Operation::kSaving, 25, seconds(10)), "About 30 s left");
  EXPECT_EQ(TimeLeftText(Operation::kOcr, 1, seconds(3)), "About 5 min left");
  EXPECT_EQ(TimeLeftText(Operation::kSaving, 0, seconds(10)), "");
}

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
  StartOnDisc();
  const int count = Shown().count;
  ExpectEntry(0, *disc_);
  EXPECT_FALSE(Entry(1).isVisible());
  TheEditor().OpenFiles({pal.TitleVobs().front()}, false);
  WaitForIdle();
  ExpectEntry(0, pal);

  Entry(1).trigger();
  EXPECT_TRUE(TheEditor().Busy());
  EXPECT_FALSE(Entry(1).isEnabled());
  WaitForIdle();
  EXPECT_EQ(Shown().count, count);
  ExpectEntry(0, *disc_);
  ExpectEntry(1, pal);
  EXPECT_TRUE(dialogs_.questions.empty());

  QFile::remove(QString::fromStdString(pal.TitleVobs().front()));
  Entry(1).trigger();
  EXPECT_EQ(dialogs_.errors.size(), 1U);
  EXPECT_FALSE(Entry(1).isVisible());
  EXPECT_EQ(Shown().count, count) << "what is open stays open";
}

}  // namespace
}  // namespace quillomar::test
