#include "ui/info_pane.h"

#include <QEvent>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextOption>
#include <algorithm>
#include <cmath>

#include "ui/control_names.h"
#include "ui/rtf_reader.h"

namespace quillomar {
namespace {

constexpr double kTwipsPerInch = 1440.0;
// The pane's own colours reach this on white.
constexpr double kLeastContrast = 3.9;
constexpr float kLightnessStep = 0.02F;

// Relative luminance and contrast ratio as the Web Content Accessibility Guidelines define them.
double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

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
    result.setForeground(ReadableOn(palette, rtf.colours[index]));
  }
  return result;
}

}  // namespace

QColor ReadableOn(const QPalette& palette, const QColor& colour) {
  const QColor background = palette.color(QPalette::Base);
  if (Contrast(colour, background) >= kLeastContrast) return colour;
  if (colour.hslSaturation() == 0) return palette.color(QPalette::Text);
  const float towards = Luminance(background) < 0.5 ? kLightnessStep : -kLightnessStep;
  QColor result = colour;
  for (float lightness = colour.lightnessF();
       Contrast(result, background) < kLeastContrast && lightness >= 0.0F && lightness <= 1.0F;
       lightness += towards) {
    result = QColor::fromHslF(colour.hslHueF(), colour.hslSaturationF(), lightness);
  }
  return result;
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
