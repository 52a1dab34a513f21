// The Tab key reaches everything that can be used, and shows where it is.

#include <QAbstractSpinBox>
#include <QApplication>
#include <QTimer>
#include <set>

#include "support/block_engine.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class FocusTest : public WindowTest {
 protected:
  static bool CanHaveFocus(const QWidget& widget) {
    const bool isPart = qobject_cast<const QAbstractSpinBox*>(widget.parentWidget()) != nullptr;
    return !isPart && widget.isVisible() && widget.isEnabled() &&
           (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr;
  }
  static std::string NameOf(const QWidget* widget) {
    return widget->objectName().toStdString() + " " + widget->metaObject()->className();
  }
  // A ring of the color of what is chosen goes around the control.
  static void ExpectMark(const QWidget& control) {
    QWidget& window = *control.window();
    const QPoint above = control.mapTo(&window, QPoint(control.width() / 2, -1));
    EXPECT_EQ(window.grab().toImage().pixelColor(above), window.palette().highlight().color())
        << NameOf(&control);
  }
  void WalkThrough(QWidget& window) {
    // QTest::qWaitForWindowActive is content with the keyboard in the window behind a dialog.
    WaitFor([&] { return window.isActiveWindow(); });
    std::set<QWidget*> unreached;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
      if (CanHaveFocus(*widget) && widget->window() == &window) unreached.insert(widget);
    }
    const auto count = unreached.size();
    EXPECT_GT(count, 1U);
    // A little more than once around: before the first key nothing has to be marked.
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    for (std::size_t i = 0; i < count + 1; ++i) {
      QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
      QWidget* const now = QApplication::focusWidget();
      ASSERT_NE(now, nullptr);
      QTest::qWait(0);
      if (unreached.erase(now) > 0) ExpectMark(*now);
    }
    for (const QWidget* const widget : unreached) ADD_FAILURE() << NameOf(widget);
  }
  // The same in a dialog that a command opens.
  void WalkThroughDialog(const char* name, CommandId command) {
    WithDialog(
        name, [&] { TheEditor().Run(command); },
        [this](QDialog& dialog) {
          WalkThrough(dialog);
          dialog.reject();
        });
  }
};

TEST_F(FocusTest, TabReachesEveryControlAndShowsIt) {
  StartOnDisc();
  TheEditor().Context().makeOcrEngine = [] { return std::make_unique<BlockEngine>(); };
  Key(Qt::Key_T, Qt::ControlModifier);
  TheEditor().SetBorder(10);
  WalkThrough(Window());
  WalkThroughDialog("preferences", CommandId::kPreferences);
  WalkThroughDialog("applyAll", CommandId::kApplyLastToAll);
  WalkThroughDialog("retime", CommandId::kRetimeAll);
  KeyOn("swatch1", Qt::Key_Return);
  QTest::qWait(0);
  ExpectMark(*Find<QWidget>("clutPopup").focusWidget());
}

}  // namespace
}  // namespace quillomar::test
