#include "ui/help_pages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

// Resources of a static library are only there once they are asked for, outside any namespace.
static void LoadManualResource() {
  Q_INIT_RESOURCE(manual);
}

namespace quillomar {

QByteArray ManualPdf() {
  LoadManualResource();
  QFile file(":/manual.pdf");
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString PagePath(const QString& page) {
  const QDir program(QCoreApplication::applicationDirPath());
  for (const QString& folder :
       {program.filePath(QUILLOMAR_PAGES_FROM_PROGRAM), QString(QUILLOMAR_PAGES_IN_SOURCES)}) {
    const QFileInfo file(QDir(folder).filePath(page));
    if (file.exists()) return file.canonicalFilePath();
  }
  return {};
}

}  // namespace quillomar
