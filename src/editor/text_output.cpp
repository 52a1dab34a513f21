#include "editor/text_output.h"

#include "base/format.h"
#include "editor/info_text.h"
#include "editor/time_code.h"
#include "spu/parse.h"

namespace quillomar {
namespace {

constexpr std::size_t kMaxSrtLines = 32;

// Decoding is needed to tell; a bitmap that was not there before does not stay.
bool IsWritten(SubpictureUnit& unit, const SpuContext& context) {
  if (unit.ocrText.empty()) return false;
  const bool hadPixels = !unit.pixels.empty();
  const bool shown = IsShown(unit, context);
  if (!hadPixels) unit.ReleasePixels();
  return shown;
}

std::string SrtRecord(const SubpictureUnit& unit, VideoStandard standard) {
  const std::string time = FormatSrtTimeLine(unit.globalTime, DurationMs(unit, standard), standard);
  std::string record = Format("%d\n%s\n", unit.number, time.c_str());
  for (std::size_t i = 0; i < unit.ocrText.size() && i < kMaxSrtLines; ++i) {
    if (unit.ocrText[i].empty()) break;
    record += unit.ocrText[i] + "\n";
  }
  return record + "\n";
}

}  // namespace

std::string SrtText(const UnitList& units, const SpuContext& context) {
  std::string text;
  for (const UnitPointer& unit : units) {
    if (IsWritten(Document::Unrecorded(unit), context)) text += SrtRecord(*unit, context.standard);
  }
  return text;
}

std::string InfoListText(const UnitList& units, VideoStandard standard) {
  std::string text;
  for (const UnitPointer& unit : units) text += InfoPlainText(*unit, standard) + "\n";
  return text;
}

Result WriteTextFile(FileSystem& files, Reporter& reporter, const std::string& path,
                     const std::string& text) {
  const auto file = files.Open(path, OpenMode::kCreate);
  if (!file) {
    reporter.ReportError("Couldn't open file for writing!");
    return Result::kFailed;
  }
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  if (!Failed(file->WriteAt(0, {bytes, text.size()}))) return Result::kDone;
  reporter.ReportError(Format("Couldn't write all of %s\nIs the disk full?", path.c_str()));
  return Result::kFailed;
}

}  // namespace quillomar
