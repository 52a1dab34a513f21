#include "ocr/learning_engine.h"

#include "base/utf8.h"
#include "ocr/disc_run.h"
#include "ocr/line_measure.h"
#include "ocr/parallel_for.h"

namespace quillomar {
namespace {

// How far ink may reach out of the boxes of a lesson, pixels.
constexpr int kSlack = 1;

class OnePicture final : public PictureSource {
 public:
  explicit OnePicture(const EnginePicture& picture) : picture_(picture) {}
  [[nodiscard]] std::size_t Count() const override { return 1; }
  [[nodiscard]] EnginePicture Get(std::size_t /*index*/) const override { return picture_; }

 private:
  const EnginePicture& picture_;
};

bool Holds(const PixelBox& outer, const PixelBox& inner) {
  return inner.x0 >= outer.x0 - kSlack && inner.x1 <= outer.x1 + kSlack &&
         inner.y0 >= outer.y0 - kSlack && inner.y1 <= outer.y1 + kSlack;
}

int CountIn(const GlyphLine& line, const GlyphPattern& wanted) {
  int count = 0;
  for (std::size_t i = 0; i < line.glyphs.size(); ++i) {
    for (std::size_t parts = 1; parts <= kMostTaughtParts && i + parts <= line.glyphs.size();
         ++parts) {
      const Glyph glyph = JoinedGlyph(line.glyphs, i, parts);
      if (AreAlike(wanted, PatternOf(glyph, line.metrics))) ++count;
    }
  }
  return count;
}

}  // namespace

LearningEngine::LearningEngine(std::unique_ptr<LineRecogniserSource> recognisers, FileSystem& files,
                               Reporter& reporter, const std::string& databaseFolder)
    : reporter_(reporter),
      recognisers_(std::move(recognisers), WorkerCount()),
      taught_(files, reporter, databaseFolder) {
  taught_.Load();
}

EngineResult LearningEngine::Recognise(const EnginePicture& picture,
                                       const EngineSettings& settings) {
  DiscKnowledge knowledge = knowledge_;
  const OnePicture pictures(picture);
  DiscRun run(pictures, settings, knowledge, taught_, recognisers_, {});
  // One subpicture seen again and again must not outvote the others.
  if (knowledge_.patterns.Size() > 0) run.KeepKnowledge();
  auto results = run.Run();
  return results[0] ? std::move(*results[0]) : EngineResult{};
}

std::vector<std::optional<EngineResult>> LearningEngine::RecogniseAll(
    const PictureSource& pictures, const EngineSettings& settings, const EngineProgress& progress) {
  return DiscRun(pictures, settings, knowledge_, taught_, recognisers_, progress).Run();
}

std::vector<int> LearningEngine::CountAppearances(const Lesson& lesson,
                                                  const PictureSource& pictures,
                                                  const EngineSettings& settings) {
  std::vector<int> counts(pictures.Count());
  const auto wanted = PatternOfLesson(lesson);
  if (!wanted) return counts;
  ParallelFor(counts.size(), [&](std::size_t, std::size_t index) {
    for (const MeasuredLine& measured : MeasureLines(pictures.Get(index), settings.italics)) {
      counts[index] += CountIn(PrepareLine(measured, knowledge_).line, *wanted);
    }
  });
  return counts;
}

Result LearningEngine::Teach(const Lesson& lesson) {
  const auto pattern = PatternOfLesson(lesson);
  const std::u32string text = FromUtf8(lesson.text);
  if (!pattern || text.empty()) {
    reporter_.ReportError("There is no whole glyph under the selected characters");
    return Result::kFailed;
  }
  return taught_.Teach(*pattern, text);
}

std::optional<GlyphPattern> LearningEngine::PatternOfLesson(const Lesson& lesson) const {
  PixelBox box;
  for (const EngineBox& part : lesson.boxes) box.Join({part.x0, part.x1, part.y0, part.y1});
  Glyph glyph;
  for (Component& component : FindComponents(lesson.picture)) {
    const PixelBox straight = Straightened(component, lesson.refRow, lesson.slant);
    if (!Holds(box, straight)) continue;
    const int pixels = component.pixels;
    glyph.Join({straight, {std::move(component)}, pixels});
  }
  if (glyph.components.empty()) return {};
  const LineMetrics metrics{lesson.refRow, glyph.box.Height()};
  return PatternOf(glyph, metrics);
}

}  // namespace quillomar
