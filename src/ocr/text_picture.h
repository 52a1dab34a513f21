#pragma once

#include <string>
#include <vector>

#include "ocr/engine.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// White columns behind the bitmap, so that the engine has room after the last glyph.
inline constexpr int kPictureMargin = 30;

// A picture for the engine, a bit or two for each pixel of the bitmap. A disc has thousands.
class TextPicture {
 public:
  TextPicture() = default;
  // The pixels of `textType` in the rows from the content's first up to, not including, its last,
  // gaps of diagonal strokes closed, and the soft edges of the text where a type is used for these.
  // The unit's bitmap must be decoded.
  TextPicture(const SubpictureUnit& unit, int textType, std::string language);

  // Grey, with the margin.
  [[nodiscard]] EnginePicture Unpack() const;
  [[nodiscard]] bool HasInk() const { return hasInk_; }

 private:
  void FindSoftEdges(ByteSpan pixels, int textType, int softType);

  std::vector<bool> ink_;
  std::vector<bool> soft_;  // empty without soft edges
  int width_ = 0;
  int height_ = 0;
  bool hasInk_ = false;
  std::string language_;
};

class TextPictures final : public PictureSource {
 public:
  void Add(TextPicture picture) { pictures_.push_back(std::move(picture)); }
  [[nodiscard]] std::size_t Count() const override { return pictures_.size(); }
  [[nodiscard]] EnginePicture Get(std::size_t index) const override {
    return pictures_[index].Unpack();
  }

 private:
  std::vector<TextPicture> pictures_;
};

}  // namespace quillomar
