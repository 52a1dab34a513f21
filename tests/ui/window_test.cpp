#include "ui/window_test.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QWindow>

namespace quillomar::test {

void WindowTest::SetUp() {
  if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS names no authored discs";
  disc_ = std::make_unique<DiscCopy>("ntsc");
  qputenv("TEMP", disc_->Folder().c_str());
}

void WindowTest::Start(const std::vector<std::string>& arguments) {
  const ProgramPlace place{"/bin/quillomar-test", "", disc_->Folder(), disc_->Folder() + "/state"};
  program_ = std::make_unique<Program>(*files_, dialogs_, place);
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

void WindowTest::Press(const char* button) {
  EXPECT_TRUE(IsEnabled(button)) << button;
  QTest::mouseClick(&Find<QAbstractButton>(button), Qt::LeftButton);
}

void WindowTest::Type(const char* box, const QString& text) {
  auto& widget = Find<QWidget>(box);
  widget.setFocus();
  QMetaObject::invokeMethod(&widget, "selectAll");
  QTest::keyClicks(&widget, text);
  QTest::keyClick(&widget, Qt::Key_Return);
}

void WindowTest::KeyOn(const char* control, Qt::Key key) {
  Find<QWidget>(control).setFocus();
  Key(key);
}

bool WindowTest::Drop(const std::string& path) {
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
  QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  enter.ignore();
  QApplication::sendEvent(&Window(), &enter);
  QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&Window(), &event);
  return enter.isAccepted();
}

void WindowTest::WithDialog(const char* name, const std::function<void()>& open,
                            const std::function<void(QDialog&)>& use) {
  auto& dialog = Find<QDialog>(name);
  bool used = false;
  QTimer::singleShot(0, [&] {
    use(dialog);
    used = true;
    EXPECT_FALSE(dialog.isVisible());
    dialog.hide();
  });
  open();
  EXPECT_TRUE(used);
}

bool WindowTest::Saved(const std::string& text) {
  const Bytes bytes = FileBytes(program_->Settings().Path());
  return std::string(bytes.begin(), bytes.end()).find(text) != std::string::npos;
}

}  // namespace quillomar::test
