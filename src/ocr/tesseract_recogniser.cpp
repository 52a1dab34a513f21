#include "ocr/tesseract_recogniser.h"

#include <omp.h>
#include <tesseract/baseapi.h>

#include <algorithm>
#include <map>
#include <mutex>

#include "base/utf8.h"

namespace quillomar {
namespace {

constexpr const char* kSpareModel = "eng";
constexpr int kResolution = 300;  // told, so that it is not estimated
// Signs that subtitles do not hold but that recognisers like to see.
constexpr const char* kNeverRead = "|{}\\~`^_\u00a9\u00ae\u2122\u00a2\u00a5";
constexpr const char* kNeverInEnglish =
    "|{}\\~`^_\u00a9\u00ae\u2122\u00a7\u00a2\u00a3\u20ac\u00a5\u00ab\u00bb\u00b0";

// What Debian and Tesseract itself call the models, by the two letters of a disc.
std::string ModelOf(const std::string& language) {
  static const std::map<std::string, std::string> models = {
      {"en", "eng"}, {"fr", "fra"}, {"de", "deu"}, {"es", "spa"}, {"it", "ita"}, {"nl", "nld"},
      {"pt", "por"}, {"sv", "swe"}, {"da", "dan"}, {"no", "nor"}, {"fi", "fin"}, {"pl", "pol"},
      {"cs", "ces"}, {"hu", "hun"}, {"ro", "ron"}, {"tr", "tur"}, {"hr", "hrv"}, {"sl", "slv"},
      {"sk", "slk"}, {"et", "est"}, {"lv", "lav"}, {"lt", "lit"}, {"is", "isl"}, {"ca", "cat"},
      {"el", "ell"}, {"ru", "rus"}, {"uk", "ukr"}, {"bg", "bul"}, {"sr", "srp"}};
  const auto found = models.find(language);
  return found == models.end() ? "" : found->second;
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
                     model == kSpareModel ? kNeverInEnglish : kNeverRead);
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
  explicit TesseractSource(std::unique_ptr<TesseractRecogniser> spare) : spare_(std::move(spare)) {}

  std::unique_ptr<LineRecogniser> Make(const std::string& language) override {
    for (const std::string& model : {ModelOf(language), std::string("script/Latin"),
                                     std::string("Latin"), std::string(kSpareModel)}) {
      if (auto recogniser = MakeFor(model)) return recogniser;
    }
    return nullptr;
  }

 private:
  std::unique_ptr<LineRecogniser> MakeFor(const std::string& model) {
    if (model.empty()) return nullptr;
    if (model == kSpareModel) {
      const std::lock_guard lock(mutex_);
      if (spare_) return std::move(spare_);
    }
    auto recogniser = std::make_unique<TesseractRecogniser>();
    return recogniser->Start(model) ? std::move(recogniser) : nullptr;
  }

  std::mutex mutex_;
  // The one that showed that there is a model; the first to ask for it gets it.
  std::unique_ptr<TesseractRecogniser> spare_;
};

}  // namespace

std::unique_ptr<LineRecogniserSource> MakeTesseractSource() {
  auto spare = std::make_unique<TesseractRecogniser>();
  if (!spare->Start(kSpareModel)) return nullptr;
  return std::make_unique<TesseractSource>(std::move(spare));
}

}  // namespace quillomar
