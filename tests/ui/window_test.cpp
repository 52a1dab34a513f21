#include "ui/window_test.h"

#include <QWindow>

namespace quillomar::test {

void WindowTest::SetUp() {
  if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no authored discs";
  disc_ = std::make_unique<DiscCopy>("ntsc");
  qputenv("TEMP", disc_->Folder().c_str());
}

void WindowTest::Start(const std::vector<std::string>& arguments) {
  const ProgramPlace place{"/bin/quillomar-test", "", disc_->Folder(), disc_->Folder() + "/state"};
  program_ = std::make_unique<Program>(files_, dialogs_, place);
  program_->Start(ParseCommandLine(arguments));
  Window().activateWindow();
  WaitFor([this] { return QTest::qWaitForWindowExposed(&Window()); });
}

void WindowTest::StartOnDisc() {
  ASSERT_NO_FATAL_FAILURE(Start({"-A", disc_->Path("VTS_01_0.IFO")}));
  ASSERT_NO_FATAL_FAILURE(WaitForIdle());
  ASSERT_GT(Shown().count, 0);
}

void WindowTest::Key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(Window().windowHandle(), key, modifiers);
}

}  // namespace quillomar::test
