#pragma once

#include <QColor>
#include <QString>
#include <string_view>
#include <vector>

namespace quillomar {

struct RtfFormat {
  int colour = 0;  // index into the document's colour table
  bool bold = false;
  bool underline = false;
  int halfPoints = 24;  // font size

  friend bool operator==(const RtfFormat&, const RtfFormat&) = default;
};

struct RtfRun {
  QString text;
  RtfFormat format;
};
using RtfParagraph = std::vector<RtfRun>;

// A rich-text document as far as the information pane needs it.
struct RtfDocument {
  std::vector<QColor> colours;
  std::vector<int> tabStops;  // twips (1440 an inch), ascending as found
  std::vector<RtfParagraph> paragraphs;
};

// Reads the subset of RTF that this program writes: the colour table, \cf, \b, \ul, \fs, \tx,
// \plain, \par, \tab, groups and escaped characters. Fonts and everything unknown are passed over.
// Text is UTF-8. Never fails: what is broken off ends there.
[[nodiscard]] RtfDocument ReadRtf(std::string_view rtf);

}  // namespace quillomar
