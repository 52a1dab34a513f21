#include "ocr/run_ocr.h"

#include <algorithm>

#include "ocr/recognised_text.h"
#include "ocr/text_roles.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

bool IsForcedButtonMenu(const SubpictureUnit& unit) {
  if (!unit.HasButtons() || unit.state.sequences.empty()) return false;
  const auto& commands = unit.state.sequences.front().commands;
  return std::any_of(commands.begin(), commands.end(),
                     [](const SpuCommand& each) { return each.code == kForcedStart; });
}

int DecideTextType(SubpictureUnit& unit, int& remembered) {
  FindTextRoles(unit);
  const int own = unit.textRoles.textType;
  if (own < kUnknownType) remembered = own;
  return remembered;
}

void Take(SubpictureUnit& unit, const EngineResult& result) {
  TakeRecognisedText(unit, result);
  KeepFirstText(unit);
}

}  // namespace

std::optional<TextPicture> TakeTextPicture(SubpictureUnit& unit, const OcrTools& tools) {
  if (IsForcedButtonMenu(unit)) return std::nullopt;
  const bool hadPixels = !unit.pixels.empty();
  if (Failed(NeedBitmap(unit, tools.context))) return std::nullopt;
  const int textType = DecideTextType(unit, tools.rememberedTextType);
  std::optional<TextPicture> picture;
  if (textType != kNoTextTypeYet) picture.emplace(unit, textType, tools.languageOf(unit));
  if (!hadPixels) unit.ReleasePixels();
  return picture;
}

void RunOcr(SubpictureUnit& unit, const OcrTools& tools) {
  const auto picture = TakeTextPicture(unit, tools);
  if (!picture) return;
  Take(unit, picture->HasInk() ? tools.engine.Recognise(picture->Unpack(), tools.settings)
                               : EngineResult());
}

void RunOcrOnAll(std::span<SubpictureUnit* const> units, const OcrTools& tools,
                 const EngineProgress& progress) {
  TextPictures pictures;
  std::vector<SubpictureUnit*> pictured;
  std::vector<SubpictureUnit*> blank;
  for (SubpictureUnit* const unit : units) {
    auto picture = TakeTextPicture(*unit, tools);
    if (!picture) continue;
    (picture->HasInk() ? pictured : blank).push_back(unit);
    if (picture->HasInk()) pictures.Add(std::move(*picture));
    if (!progress(0, units.size())) return;
  }
  const auto results = tools.engine.RecogniseAll(pictures, tools.settings, progress);
  for (std::size_t i = 0; i < std::min(results.size(), pictured.size()); ++i) {
    if (results[i]) Take(*pictured[i], *results[i]);
  }
  for (SubpictureUnit* const unit : blank) Take(*unit, {});
}

}  // namespace quillomar
