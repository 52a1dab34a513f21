#pragma once

#include <QByteArray>
#include <QString>

namespace quillomar {

// The manual (PDF) that the program carries; empty when it was built without one.
[[nodiscard]] QByteArray ManualPdf();

// Full path of one of the program's own pages (HTML), by file name: as installed with the program,
// else beside the sources that it was built from. Empty when there is no such file.
[[nodiscard]] QString PagePath(const QString& page);

}  // namespace quillomar
