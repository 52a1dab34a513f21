#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDialog>
#include <QTest>
#include <memory>

#include "app/program.h"
#include "base/platform.h"
#include "support/disc_copy.h"
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
  // Clicks a button, which must be there to be clicked.
  void Press(const char* button);
  // Types a number or a text into a box in place of what it holds, and Return.
  void Type(const char* box, const QString& text);
  // Presses a key on a control.
  void KeyOn(const char* control, Qt::Key key);
  // Drags a file over the window and lets go of it; whether the window wanted it.
  bool Drop(const std::string& path);
  // Has `use` work a dialog that `open` opens; it must be closed afterwards.
  void WithDialog(const char* name, const std::function<void()>& open,
                  const std::function<void(QDialog&)>& use);
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
  Preferences& Settings() { return TheEditor().Context().preferences; }
  bool IsEnabled(const char* control) { return Find<QWidget>(control).isEnabled(); }
  // The settings file holds this text.
  bool Saved(const std::string& text);

  std::unique_ptr<FileSystem> files_ = MakeDiskFileSystem();
  StubDialogs dialogs_;
  std::unique_ptr<DiscCopy> disc_;
  std::unique_ptr<Program> program_;
};

}  // namespace quillomar::test
