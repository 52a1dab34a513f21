// Prints a Markdown document with its images as a PDF: manual_pdf INPUT.md OUTPUT.pdf

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kDotsPerInch = 150;
constexpr double kImageDotsPerInch = 96;
constexpr double kMarginMm = 18;
constexpr double kFontPoints = 10.5;
constexpr double kCellPadding = 8;  // dots

// Images wider than the page are shown as wide as the page.
void FitImage(QTextDocument& document, const QTextFragment& fragment, const QDir& folder,
              int pageWidth) {
  QTextImageFormat format = fragment.charFormat().toImageFormat();
  const double widest = pageWidth * kImageDotsPerInch / kDotsPerInch;
  const QImage image(folder.filePath(format.name()));
  format.setWidth(std::min<double>(image.width(), widest));
  QTextCursor cursor(&document);
  cursor.setPosition(fragment.position());
  cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
  cursor.setCharFormat(format);
}

void FitImages(QTextDocument& document, const QDir& folder, int pageWidth) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextFragment fragment = part.fragment();
      if (!fragment.charFormat().isImageFormat()) continue;
      FitImage(document, fragment, folder, pageWidth);
      break;  // the block's parts have changed; the manual's images stand alone
    }
  }
}

void GiveTablesRoom(const QTextDocument& document) {
  for (QTextFrame* const frame : document.rootFrame()->childFrames()) {
    auto* const table = qobject_cast<QTextTable*>(frame);
    if (table == nullptr) continue;
    QTextTableFormat format = table->format();
    format.setCellPadding(kCellPadding);
    format.setCellSpacing(0);
    format.setBorderCollapse(true);
    table->setFormat(format);
  }
}

int Fail(const char* what, const QString& path) {
  std::fprintf(stderr, "manual_pdf: %s %s\n", what, qPrintable(path));
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  const QStringList arguments = QGuiApplication::arguments();
  if (arguments.size() != 3) return Fail("usage:", "manual_pdf INPUT.md OUTPUT.pdf");
  QFile input(arguments[1]);
  if (!input.open(QIODevice::ReadOnly)) return Fail("cannot read", arguments[1]);

  QFile output(arguments[2]);
  if (!output.open(QIODevice::WriteOnly)) return Fail("cannot write", arguments[2]);
  QPdfWriter writer(&output);
  writer.setTitle("Quillomar: User Manual");
  writer.setPageSize(QPageSize(QPageSize::A4));
  writer.setPageMargins(QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm),
                        QPageLayout::Millimeter);
  writer.setResolution(kDotsPerInch);

  QTextDocument document;
  const QDir folder = QFileInfo(arguments[1]).absoluteDir();
  document.setMetaInformation(
      QTextDocument::DocumentUrl,
      QUrl::fromLocalFile(QFileInfo(arguments[1]).absoluteFilePath()).toString());
  document.documentLayout()->setPaintDevice(&writer);
  QFont font("DejaVu Sans");
  font.setPointSizeF(kFontPoints);
  document.setDefaultFont(font);
  document.setMarkdown(QString::fromUtf8(input.readAll()));
  GiveTablesRoom(document);
  FitImages(document, folder, writer.width());
  document.setPageSize(QSizeF(writer.width(), writer.height()));
  document.print(&writer);
  return output.error() == QFileDevice::NoError ? 0 : Fail("cannot write", arguments[2]);
}
