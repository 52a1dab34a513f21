// Prints a Markdown document with its images as a PDF: manual_pdf INPUT.md OUTPUT.pdf

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>
#include <QUrl>
#include <cstdio>

namespace {

constexpr int kDotsPerInch = 150;
constexpr double kMarginMm = 18;
constexpr double kFontPoints = 10.5;

// Images wider than the page are shown as wide as the page.
class PageDocument final : public QTextDocument {
 public:
  explicit PageDocument(int width) : width_(width) {}

 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    QVariant resource = QTextDocument::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return resource;
    QImage image = resource.value<QImage>();
    if (image.isNull()) image.loadFromData(resource.toByteArray());
    return image.width() > width_ ? image.scaledToWidth(width_, Qt::SmoothTransformation) : image;
  }

 private:
  int width_;
};

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

  PageDocument document(writer.width());
  document.setMetaInformation(
      QTextDocument::DocumentUrl,
      QUrl::fromLocalFile(QFileInfo(arguments[1]).absoluteFilePath()).toString());
  document.documentLayout()->setPaintDevice(&writer);
  QFont font("DejaVu Sans");
  font.setPointSizeF(kFontPoints);
  document.setDefaultFont(font);
  document.setMarkdown(QString::fromUtf8(input.readAll()));
  document.setPageSize(QSizeF(writer.width(), writer.height()));
  document.print(&writer);
  return output.error() == QFileDevice::NoError ? 0 : Fail("cannot write", arguments[2]);
}
