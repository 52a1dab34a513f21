#include "ui/info_pane.h"

#include <QEvent>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextOption>
#include <cmath>

#include "ui/control_names.h"
#include "ui/rtf_reader.h"

namespace quillomar {
namespace {

constexpr double kTwipsPerInch = 1440.0;
constexpr double kLeastContrast = 0.35;

QTextBlockFormat BlockFormat(const RtfDocument& rtf, int dotsPerInch) {
  QList<QTextOption::Tab> tabs;
  for (const int twips : rtf.tabStops) {
    tabs.append(QTextOption::Tab(twips * dotsPerInch / kTwipsPerInch, QTextOption::LeftTab));
  }
  QTextBlockFormat format;
  format.setTabPositions(tabs);
  return format;
}

QTextCharFormat CharFormat(const RtfDocument& rtf, const RtfFormat& format,
                           const QPalette& palette) {
  QTextCharFormat result;
  result.setFontWeight(format.bold ? QFont::Bold : QFont::Normal);
  result.setFontUnderline(format.underline);
  result.setFontPointSize(format.halfPoints / 2.0);
  const auto index = static_cast<std::size_t>(format.colour);
  if (index < rtf.colours.size()) {
    result.setForeground(ReadableOn(palette.color(QPalette::Base), rtf.colours[index]));
  }
  return result;
}

}  // namespace

QColor ReadableOn(const QColor& background, const QColor& colour) {
  const auto lightness = colour.lightnessF();
  if (std::abs(lightness - background.lightnessF()) >= kLeastContrast) return colour;
  const auto mirrored = colour.lightnessF() < 0.5F ? std::max(1.0F - lightness, 0.7F)
                                                   : std::min(1.0F - lightness, 0.3F);
  return QColor::fromHslF(std::max(colour.hslHueF(), 0.0F), colour.hslSaturationF(), mirrored);
}

InfoPane::InfoPane(QWidget* parent) : QTextEdit(parent) {
  NameControl(*this, "infoPane", "Subpicture information",
              "Information about the current subpic and its commands");
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setUndoRedoEnabled(false);
}

void InfoPane::ShowRtf(const std::string& rtf) {
  if (rtf == rtf_) return;
  rtf_ = rtf;
  Rebuild();
}

void InfoPane::changeEvent(QEvent* event) {
  QTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Rebuild();
}

void InfoPane::Rebuild() {
  const int scrolled = verticalScrollBar()->value();
  clear();
  const RtfDocument rtf = ReadRtf(rtf_);
  QTextCursor cursor(document());
  const QTextBlockFormat blockFormat = BlockFormat(rtf, logicalDpiX());
  cursor.setBlockFormat(blockFormat);
  bool first = true;
  for (const RtfParagraph& paragraph : rtf.paragraphs) {
    if (!first) cursor.insertBlock(blockFormat);
    first = false;
    for (const RtfRun& run : paragraph) {
      cursor.insertText(run.text, CharFormat(rtf, run.format, palette()));
    }
  }
  verticalScrollBar()->setValue(scrolled);
}

}  // namespace quillomar
