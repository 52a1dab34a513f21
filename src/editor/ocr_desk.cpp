#include "editor/ocr_desk.h"

#include <algorithm>

#include "base/platform.h"

namespace quillomar {
namespace {

// The word spacing that the user chooses counts in pairs of columns.
constexpr int kColumnsPerSpacing = 2;
constexpr std::size_t kAllPercent = 100;

}  // namespace

bool OcrDesk::Ready() {
  if (!engine_ && session_.makeOcrEngine) engine_ = session_.makeOcrEngine();
  if (engine_) return true;
  session_.reporter.ReportError(
      "There is no text recognition on this system.\n"
      "Install Tesseract with the language data of your subpics (the packages tesseract-ocr-eng,\n"
      "tesseract-ocr-fra, ...) and try again.");
  return false;
}

OcrTools OcrDesk::Tools(const SpuContext& context) {
  const Preferences& preferences = session_.preferences;
  const EngineSettings settings{
      preferences.ocrItalics != 0,
      std::clamp(preferences.ocrSpaceSelect, 0, kPictureWidth) * kColumnsPerSpacing};
  return {*engine_, settings, session_.rememberedTextType,
          [this](const SubpictureUnit& unit) { return LanguageOf(unit); }, context};
}

CutOptions OcrDesk::Cut() const {
  const Preferences& preferences = session_.preferences;
  return {preferences.ocrRecenter != 0,
          preferences.ocrAlignBottom != 0,
          preferences.forceEvenMoves != 0,
          {preferences.cropBorderX, preferences.cropBorderY}};
}

HearingOptions OcrDesk::Hearing() const {
  const Preferences& preferences = session_.preferences;
  return {BracketPairsOf(preferences), preferences.ocrRemoveSpeakers != 0, Cut()};
}

void OcrDesk::ForgetDisc() {
  if (engine_) engine_->ForgetDisc();
}

std::string OcrDesk::LanguageOf(const SubpictureUnit& unit) const {
  if (!session_.ocrLanguage.empty()) return session_.ocrLanguage;
  const CellEntry* const cell = document_.Cells().Find(unit.vcid);
  if (cell == nullptr) return {};
  const std::string& language =
      cell->subpictures.at(static_cast<std::size_t>(unit.stream)).language;
  const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
  return std::all_of(language.begin(), language.end(), isLetter) ? language : std::string();
}

EngineProgress ProgressOf(JobControl& control, std::size_t units) {
  control.items = static_cast<int>(units);
  control.itemsDone = 0;
  control.countingSince = MonotonicMs();
  return [&control, units](std::size_t done, std::size_t steps) {
    if (steps > 0) {
      control.percent = static_cast<int>(done * kAllPercent / steps);
      control.itemsDone = static_cast<int>(done * units / steps);
    }
    return !control.abortRequested;
  };
}

}  // namespace quillomar
