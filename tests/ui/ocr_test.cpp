// The pane of recognised text, with an engine that reads widths.

#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>

#include "support/block_engine.h"
#include "ui/picture_view.h"
#include "ui/window_test.h"

namespace quillomar::test {
namespace {

class OcrPaneTest : public WindowTest {
 protected:
  void StartWithEngine() {
    ASSERT_NO_FATAL_FAILURE(StartOnDisc());
    TheEditor().Context().makeOcrEngine = [this] {
      auto engine = std::make_unique<BlockEngine>();
      engine_ = engine.get();
      return engine;
    };
    Key(Qt::Key_T, Qt::ControlModifier);
    ASSERT_GT(Boxes(), 3);
  }
  const SubpictureUnit& Unit() { return *TheEditor().List().Current(); }
  int Boxes() { return Unit().charBoxCount; }
  QPlainTextEdit& Text() { return Find<QPlainTextEdit>("ocrText"); }
  // Characters of the text from `first` on.
  void Choose(int first, int count) {
    QTextCursor cursor = Text().textCursor();
    cursor.setPosition(first);
    cursor.setPosition(first + count, QTextCursor::KeepAnchor);
    Text().setTextCursor(cursor);
    Text().setFocus();
  }

  BlockEngine* engine_ = nullptr;
};

TEST_F(OcrPaneTest, WithoutAnEngineTheCommandsRefuse) {
  StartOnDisc();
  EXPECT_FALSE(Text().isVisible());
  TheEditor().Context().makeOcrEngine = nullptr;
  Key(Qt::Key_T, Qt::ControlModifier);
  Key(Qt::Key_W, Qt::ControlModifier);
  EXPECT_EQ(dialogs_.errors.size(), 2U);
  EXPECT_EQ(Boxes(), 0);
}

TEST_F(OcrPaneTest, SelectedTextIsErasedFromTextAndBitmap) {
  StartWithEngine();
  const QString before = Text().toPlainText();
  EXPECT_EQ(before.section('\n', 0, 0).toStdString(), Unit().ocrText.front());
  const auto ink = [this] { return Unit().state.statistics.pixelCounts; };
  auto pixels = ink();
  for (const auto& [key, modifier] :
       {std::pair(Qt::Key_Delete, Qt::NoModifier), std::pair(Qt::Key_X, Qt::ControlModifier),
        std::pair(Qt::Key_Backspace, Qt::NoModifier)}) {
    Choose(0, 1);
    Key(key, modifier);
    EXPECT_NE(ink(), pixels);
    pixels = ink();
  }
  EXPECT_TRUE(Unit().state.modified);
  EXPECT_NE(Text().toPlainText(), before);
  EXPECT_EQ(Text().toPlainText().section('\n', 0, 0).toStdString(), Unit().ocrText.front());
  Press("savedText");
  EXPECT_EQ(Text().toPlainText(), before);
  Key(Qt::Key_Delete);
  EXPECT_EQ(ink(), pixels);
  // In the text, the arrows move its cursor and not the list.
  Press("savedText");
  KeyOn("ocrText", Qt::Key_Right);
  EXPECT_EQ(Shown().index, 0);
}

TEST_F(OcrPaneTest, ABoxIsChosenOnThePictureAndBringsTheTextBack) {
  StartWithEngine();
  EXPECT_TRUE(Text().isVisible());
  Press("showText");
  EXPECT_FALSE(Text().isVisible());
  const CharBox& second = Unit().charBoxes[1];
  const QRectF frame = Find<PictureView>("pictureView").FrameRect();
  const double x = Shown().picture.x + (second.x0 + second.x1) / 2.0;
  const double y = Shown().picture.y + (second.y0 + second.y1) / 2.0;
  const QPointF place(frame.x() + x * frame.width() / kPictureWidth,
                      frame.y() + y * frame.height() / FrameHeight(Shown().standard));
  QTest::mouseClick(&Find<QWidget>("textBoxes"), Qt::LeftButton, {}, place.toPoint());
  EXPECT_EQ(Text().textCursor().selectionStart(), 1);
  EXPECT_EQ(Text().textCursor().selectionEnd(), 2);
  EXPECT_TRUE(Text().isVisible());
  TheEditor().CloseFiles();
  EXPECT_FALSE(Text().isVisible());
}

TEST_F(OcrPaneTest, DoubtfulCharactersAreWalkedThroughAndCorrected) {
  StartWithEngine();
  Press("ocrButton");
  WaitForIdle();
  for (const UnitPointer& unit : TheEditor().List().List()) EXPECT_NE(unit->charBoxCount, 0);
  Key(Qt::Key_F4);
  const int place = Text().textCursor().selectionStart();
  EXPECT_EQ(Text().textCursor().selectedText(), "_");
  Key(Qt::Key_F4);
  EXPECT_TRUE(Shown().index > 0 || Text().textCursor().selectionStart() > place);
  auto& box = Find<QLineEdit>("correction");
  box.setText("two words");
  QTest::keyClick(&box, Qt::Key_Return);
  EXPECT_EQ(dialogs_.errors.size(), 1U);
  EXPECT_TRUE(engine_->lessons.empty());
  // No: this place alone; yes: all like it, and for good.
  const auto correct = [&](bool all) {
    dialogs_.agrees = all;
    Choose(0, 1);
    box.setText("\u00C9");
    QTest::keyClick(&box, Qt::Key_Return);
    WaitForIdle();
    EXPECT_EQ(Text().toPlainText().left(1), "\u00C9");
  };
  Key(Qt::Key_Home);
  const QString misread = Text().toPlainText();
  correct(false);
  EXPECT_TRUE(engine_->lessons.empty());
  TheEditor().Run(CommandId::kUndo);
  EXPECT_EQ(Text().toPlainText(), misread);
  correct(true);
  ASSERT_EQ(engine_->lessons.size(), 1U);
  EXPECT_EQ(engine_->lessons[0].text, "\xC3\x89");
  EXPECT_EQ(engine_->lessons[0].boxes.size(), 1U);
}

}  // namespace
}  // namespace quillomar::test
