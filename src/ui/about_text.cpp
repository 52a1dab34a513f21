#include "ui/about_text.h"

#include <QtGlobal>

namespace quillomar {

QString AboutText() {
  return QString(
             "<h3>Quillomar %1</h3>"
             "<p>An editor for the subtitles of a DVD-Video disc as the disc stores them: it shows "
             "every subpicture, changes its colors, transparency and commands, and writes it back "
             "in place.</p>"
             "<p>Free software under the MIT licence. It comes without any warranty.</p>"
             "<p>Libraries: Qt %2 (running with %3), under the GNU LGPL version 3; FFmpeg, under "
             "the "
             "GNU LGPL or GPL as it was built; Tesseract, under the Apache License 2.0, with "
             "Leptonica, under its BSD licence; the GNU C++ standard library.</p>")
      .arg(QUILLOMAR_VERSION, QT_VERSION_STR, qVersion());
}

}  // namespace quillomar
