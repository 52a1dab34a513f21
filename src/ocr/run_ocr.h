#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "ocr/engine.h"
#include "ocr/text_picture.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

inline constexpr int kNoTextTypeYet = -1;

// What reading text takes besides the unit.
struct OcrTools {
  OcrEngine& engine;
  EngineSettings settings;
  // Of the last unit whose own is known, for those whose own is not.
  int& rememberedTextType;
  std::function<std::string(const SubpictureUnit&)> languageOf;  // two letters or none
  SpuContext context;
};

// The picture that is to be read of a unit. Decides and remembers the text type, so the order of
// calls counts. Nothing for a unit that is left alone: one with buttons that is always shown, one
// that cannot be decoded, one whose text type is not known.
std::optional<TextPicture> TakeTextPicture(SubpictureUnit& unit, const OcrTools& tools);

// Reads one unit's text into its record; a unit that is left alone keeps what it has.
void RunOcr(SubpictureUnit& unit, const OcrTools& tools);

// Reads the units, which are given in the order of the list. Units that were not reached when the
// progress said stop keep what they have.
void RunOcrOnAll(std::span<SubpictureUnit* const> units, const OcrTools& tools,
                 const EngineProgress& progress);

}  // namespace quillomar
