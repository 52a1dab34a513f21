#include "ocr/tesseract_recogniser.h"

#include <omp.h>
#include <tesseract/baseapi.h>

#include <algorithm>
#include <mutex>
#include <set>

#include "base/utf8.h"
#include "ocr/languages.h"

namespace quillomar {
namespace {

constexpr const char* kEnglishModel = "eng";
constexpr int kResolution = 300;  // told, so that it is not estimated
// Signs that subtitles do not hold but that recognisers like to see.
constexpr const char* kNeverRead = "|{}\\~`^_\u00a9\u00ae\u2122\u00a2\u00a5";
constexpr const char* kNeverInEnglish =
    "|{}\\~`^_\u00a9\u00ae\u2122\u00a7\u00a2\u00a3\u20ac\u00a5\u00ab\u00bb\u00b0";

std::string ModelOf(const std::string& language) {
  for (const ReadableLanguage& each : ReadableLanguages()) {
    if (language == each.code) return each.model;
  }
  return {};
}

class TesseractRecogniser final : public LineRecogniser {
 public:
  // False when the model is not there.
  bool Start(const std::string& model) {
    // Before the start, or a missing model is told on standard error.
    api_.SetVariable("debug_file", "/dev/null");
    if (api_.Init(nullptr, model.c_str(), tesseract::OEM_LSTM_ONLY) != 0) return false;
    api_.SetVariable("tessedit_do_invert", "0");
    api_.SetVariable("tessedit_char_blacklist",
                     model == kEnglishModel ? kNeverInEnglish : kNeverRead);
    api_.SetPageSegMode(tesseract::PSM_SINGLE_LINE);
    return true;
  }

  std::vector<Reading> Read(const LineImage& image) override {
    // One line is too little work to share, and sharing is asked for by each thread anew.
    omp_set_max_active_levels(0);
    api_.SetImage(image.grey.data(), image.width, image.height, 1, image.width);
    api_.SetSourceResolution(kResolution);
    std::vector<Reading> readings;
    if (api_.Recognize(nullptr) == 0) {
      const std::unique_ptr<tesseract::ResultIterator> at(api_.GetIterator());
      if (at && !at->Empty(tesseract::RIL_SYMBOL)) {
        do {
          AddSymbol(*at, image, readings);
        } while (at->Next(tesseract::RIL_SYMBOL));
      }
    }
    api_.Clear();
    return readings;
  }

 private:
  static void AddSymbol(const tesseract::ResultIterator& at, const LineImage& image,
                        std::vector<Reading>& readings) {
    const std::unique_ptr<char[]> text(at.GetUTF8Text(tesseract::RIL_SYMBOL));
    PixelBox box;
    if (!text || !at.BoundingBox(tesseract::RIL_SYMBOL, &box.x0, &box.y0, &box.x1, &box.y1)) return;
    --box.x1;
    --box.y1;
    bool startsWord = at.IsAtBeginningOf(tesseract::RIL_WORD);
    const double confidence = static_cast<double>(at.Confidence(tesseract::RIL_SYMBOL)) / 100;
    for (const char32_t ch : FromUtf8(text.get())) {
      if (ch == U' ') continue;
      readings.push_back({ch, image.ToPicture(box), std::clamp(confidence, 0.0, 1.0), startsWord});
      startsWord = false;
    }
  }

  tesseract::TessBaseAPI api_;
};

class TesseractSource final : public LineRecogniserSource {
 public:
  explicit TesseractSource(ModelMessage tell) : tell_(std::move(tell)) {}

  // Whether there is any model.
  bool Start() {
    std::vector<std::string> models = {kEnglishModel, "script/Latin", "Latin"};
    for (const ReadableLanguage& each : ReadableLanguages()) models.emplace_back(each.model);
    for (const std::string& model : models) {
      first_ = MakeFor(model);
      firstModel_ = model;
      if (first_) return true;
    }
    return false;
  }

  std::unique_ptr<LineRecogniser> Make(const std::string& language) override {
    const std::string own = ModelOf(language);
    if (auto recogniser = MakeFor(own)) return recogniser;
    for (const std::string& model : SpareModels()) {
      if (auto recogniser = MakeFor(model)) {
        Tell(language, own, model);
        return recogniser;
      }
    }
    return nullptr;
  }

 private:
  std::unique_ptr<LineRecogniser> MakeFor(const std::string& model) {
    if (model.empty()) return nullptr;
    if (model == firstModel_) {
      const std::lock_guard lock(mutex_);
      if (first_) return std::move(first_);
    }
    auto recogniser = std::make_unique<TesseractRecogniser>();
    if (!recogniser->Start(model)) return nullptr;
    return recogniser;
  }
  // The models that may stand in for another language's, the better ones first.
  [[nodiscard]] std::vector<std::string> SpareModels() const {
    return {"script/Latin", "Latin", kEnglishModel, firstModel_};
  }
  // Once for each language that is known.
  void Tell(const std::string& language, const std::string& own, const std::string& used) {
    if (language.empty() || !tell_) return;
    {
      const std::lock_guard lock(mutex_);
      if (!told_.insert(language).second) return;
    }
    tell_("Tesseract's model for subpics in the language \"" + language + "\" is not installed" +
          (own.empty() ? "" : " (package tesseract-ocr-" + own + ")") +
          ". They are read with the model \"" + used + "\".");
  }

  ModelMessage tell_;
  std::mutex mutex_;
  std::set<std::string> told_;
  // The one that showed that there is a model; the first to ask for it gets it.
  std::unique_ptr<LineRecogniser> first_;
  std::string firstModel_;
};

}  // namespace

std::unique_ptr<LineRecogniserSource> MakeTesseractSource(ModelMessage tell) {
  auto source = std::make_unique<TesseractSource>(std::move(tell));
  if (!source->Start()) return nullptr;
  return source;
}

}  // namespace quillomar
