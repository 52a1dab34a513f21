#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <memory>

#include "app/program.h"
#include "support/disc_copy.h"
#include "ui/gated_files.h"
#include "ui/stub_dialogs.h"

namespace quillomar::test {

// The whole program on a copy of an authored disc, with keys and clicks as from a user.
class WindowTest : public testing::Test {
 protected:
  void SetUp() override;

  // Starts the program as from a command line and waits until its window is up.
  void Start(const std::vector<std::string>& arguments);
  // As Start, on the title set of the disc, and waits until the scan has ended.
  void StartOnDisc();

  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  // Ends in a failure of the test when the condition does not come true.
  template <typename Condition>
  void WaitFor(Condition condition) {
    ASSERT_TRUE(QTest::qWaitFor(condition, 20'000));
  }
  void WaitForIdle() {
    WaitFor([this] { return !TheEditor().Busy(); });
  }

  template <typename Widget>
  Widget& Find(const char* objectName) {
    auto* const widget = Window().findChild<Widget*>(objectName);
    EXPECT_NE(widget, nullptr) << objectName;
    return *widget;
  }

  MainWindow& Window() { return program_->Window(); }
  Editor& TheEditor() { return program_->TheEditor(); }
  const View& Shown() { return TheEditor().CurrentView(); }
  std::string SettingsPath() { return program_->Settings().Path(); }

  GatedFileSystem files_;
  StubDialogs dialogs_;
  std::unique_ptr<DiscCopy> disc_;
  std::unique_ptr<Program> program_;
};

}  // namespace quillomar::test
