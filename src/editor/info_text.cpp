#include "editor/info_text.h"

#include <algorithm>
#include <vector>

#include "base/format.h"
#include "editor/time_code.h"
#include "spu/parse.h"

namespace quillomar {
namespace {

// Indices into the document's colour table.
enum LineColour { kBlack = 0, kRed = 1, kGreen = 2, kBlue = 3 };

struct InfoLine {
  LineColour colour;
  std::string text;
};

constexpr int kTabStep = 360;
constexpr int kLastTab = 6480;

std::string Prolog() {
  std::string rtf =
      "{\\rtf1\\ansi\\deff0\\deftab720{\\fonttbl{\\f0\\froman Tahoma;}}\n"
      "{\\colortbl\\red0\\green0\\blue0;\\red255\\green0\\blue0;\\red0\\green134\\blue37;"
      "\\red0\\green0\\blue255;}\n"
      "\\deflang1033\\pard";
  for (int tab = kTabStep; tab <= kLastTab; tab += kTabStep) rtf += Format("\\tx%d", tab);
  return rtf + "\\plain\\f3\\fs20 ";
}

void AppendIdentity(const SubpictureUnit& unit, std::vector<InfoLine>& lines) {
  lines.push_back({kBlue, Format("\\fs16\\b\\ul Subpic# = %d (%d in stream)\\b0\\ul0\n",
                                 unit.number, unit.numberInStream)});
  lines.push_back({kBlue, Format("StreamID = 0x%x\n", unit.SubStreamId())});
  lines.push_back({kBlue, Format("LBA = %d\n", static_cast<int>(unit.Lba()))});
  lines.push_back({kBlue, Format("V/CID = %d/%d\n", unit.vcid.vobId, unit.vcid.cellId)});
  lines.push_back({kBlue, Format("PTS = %d\n", static_cast<int>(unit.state.pts))});
}

void AppendTimes(const SubpictureUnit& unit, VideoStandard standard, std::vector<InfoLine>& lines) {
  const int duration = DurationMs(unit, standard);
  lines.push_back({kBlue, duration < 0 ? std::string("Duration = infinite\n")
                                       : Format("Duration = %.3fs\n", duration * 0.001)});
  const std::string timeCode = FormatSrtTimeLine(unit.globalTime, duration, standard);
  lines.push_back({kBlue, Format("TimeCode: %s\n", timeCode.c_str())});
}

void AppendCommands(const SubpictureUnit& unit, VideoStandard standard,
                    std::vector<InfoLine>& lines) {
  std::string text;
  int sequence = 0;
  int command = -1;
  while (!Failed(DumpCommands(unit, standard, text, sequence, command))) {
    if (text.empty()) continue;
    lines.push_back({text.front() == ' ' ? kBlack : kRed, text});
  }
}

std::vector<InfoLine> InfoLines(const SubpictureUnit& unit, VideoStandard standard) {
  std::vector<InfoLine> lines;
  AppendIdentity(unit, lines);
  AppendTimes(unit, standard, lines);
  if (unit.state.modified) lines.push_back({kGreen, "Modified\n"});
  AppendCommands(unit, standard, lines);
  return lines;
}

bool IsHeading(const InfoLine& line) {
  return line.text.size() > 1 && line.text[1] == 'C';
}

void EraseAll(std::string& text, const std::string& part) {
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at)) {
    text.erase(at, part.size());
  }
}

}  // namespace

std::string InfoRtf(const SubpictureUnit& unit, VideoStandard standard) {
  std::string rtf = Prolog();
  for (const InfoLine& line : InfoLines(unit, standard)) {
    rtf +=
        Format(IsHeading(line) ? "{\\ul\\cf%d %s}" : "\\cf%d %s", line.colour, line.text.c_str());
    rtf += "\\par ";
  }
  return rtf + "\n\\par }";
}

std::string InfoPlainText(const SubpictureUnit& unit, VideoStandard standard) {
  std::string plain;
  for (InfoLine& line : InfoLines(unit, standard)) {
    EraseAll(line.text, "\\fs16\\b\\ul ");
    EraseAll(line.text, "\\b0\\ul0");
    EraseAll(line.text, "\\par ");
    plain += line.text;
  }
  return plain;
}

}  // namespace quillomar
