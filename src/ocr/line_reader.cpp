#include "ocr/line_reader.h"

#include <algorithm>
#include <limits>

#include "base/utf8.h"
#include "ocr/accents.h"
#include "ocr/alignment.h"
#include "ocr/glyph_cutter.h"
#include "ocr/letter_rules.h"
#include "ocr/note_finder.h"
#include "spu/char_box.h"

namespace quillomar {
namespace {

// When known patterns are enough to read a line.
constexpr int kWellKnown = 3;  // votes
constexpr double kWellKnownShare = 0.9, kWellKnownBarShare = 0.5;
// The share from which on it guides the laying of readings.
constexpr double kKnownShare = 0.75;
// Shares of the votes that overrule what was read.
constexpr double kMajority = 0.6, kFewVotesMajority = 0.66, kBarMajority = 0.85,
                 kUnreadMajority = 0.4;
constexpr int kFewVotes = 3;
// What is read with less, and not often enough, is worth a look.
constexpr double kDoubtfulConfidence = 0.7;
constexpr double kDoubtfulShare = 0.7;
// A gap between dots that is wider than others by this parts words.
constexpr double kWiderThanDots = 1.4;
constexpr double kCedilla = 0.2;

bool IsDotPair(const LineText& line, std::size_t glyph) {
  return line.texts[glyph - 1].text == U"." && line.texts[glyph].text == U".";
}

// Between the dots of an ellipsis; they stand further apart than letters do.
int LeastDotGap(const LineText& line) {
  int least = std::numeric_limits<int>::max() / 2;
  for (std::size_t i = 1; i < line.texts.size(); ++i) {
    if (IsDotPair(line, i)) least = std::min(least, line.GapBefore(i));
  }
  return least;
}

double Required(const std::u32string& own, const std::u32string& best, int votes) {
  if (own.empty()) return kUnreadMajority;
  if (IsBarText(own) && IsBarText(best)) return kBarMajority;
  return votes <= kFewVotes ? kFewVotesMajority : kMajority;
}

GlyphText TextOf(const Match& match, const std::vector<Reading>& readings) {
  GlyphText text;
  text.startsWord = match.reading < readings.size() && readings[match.reading].startsWord;
  text.confidence = match.readings > 0 ? 1 : 0;
  for (std::size_t i = match.reading; i < match.reading + match.readings; ++i) {
    text.text += readings[i].ch;
    text.confidence = std::min(text.confidence, readings[i].confidence);
  }
  return text;
}

}  // namespace

void LineReader::JoinTaught(LineText& line) const {
  if (taught_.Size() == 0) return;
  for (std::size_t i = 0; i < line.line.glyphs.size(); ++i) {
    for (std::size_t count = kMostTaughtParts; count > 1; --count) {
      if (i + count > line.line.glyphs.size()) continue;
      const Glyph joined = JoinedGlyph(line.line.glyphs, i, count);
      if (taught_.TextOf(PatternOf(joined, line.line.metrics)).empty()) continue;
      line.JoinGlyphs(i, count);
      break;
    }
  }
}

void LineReader::JoinKnownParts(LineText& line) const {
  JoinTaught(line);
  const auto& glyphs = line.line.glyphs;
  std::optional<std::size_t> previous;
  for (std::size_t i = 0; i < glyphs.size(); ++i) {
    const auto id = knowledge_.patterns.Find(PatternOf(glyphs[i], line.line.metrics));
    if (previous && id && knowledge_.joins.Ask({*previous, *id}) == JoinModel::Answer::kOne) {
      line.JoinGlyphs(--i, 2);
      previous = knowledge_.patterns.Find(PatternOf(glyphs[i], line.line.metrics));
    } else {
      previous = id;
    }
  }
}

bool LineReader::ReadFromPatterns(LineText& line, const std::string& language) const {
  LineText attempt;
  attempt.line = line.line;
  JoinKnownParts(attempt);
  attempt.texts.resize(attempt.line.glyphs.size());
  for (std::size_t i = 0; i < attempt.texts.size(); ++i) {
    if (!ReadGlyph(attempt, i)) return false;
  }
  PartWords(attempt);
  FindNotes(attempt);
  if (!FixBars(attempt, language)) return false;
  line = std::move(attempt);
  return true;
}

bool LineReader::ReadGlyph(LineText& line, std::size_t glyph) const {
  GlyphText& text = line.texts[glyph];
  const GlyphPattern pattern = PatternOf(line.line.glyphs[glyph], line.line.metrics);
  text.confidence = 1;
  text.text = taught_.TextOf(pattern);
  text.fixed = !text.text.empty();
  if (!text.fixed) {
    const auto id = knowledge_.patterns.Find(pattern);
    if (!id) return false;
    const Votes& votes = knowledge_.patterns.VotesOf(*id);
    text.text = votes.Best();
    const bool bar = IsBarText(text.text) && IsBar(line.line.glyphs[glyph], line.line.metrics);
    const double share = bar ? kWellKnownBarShare : kWellKnownShare;
    if (votes.Count() < kWellKnown || votes.Share() < share) return false;
  }
  if (glyph == 0 || spaceWidth_ > 0 || IsDotPair(line, glyph)) return true;
  const auto parts = knowledge_.spaces.JudgeAlone(line.RelativeGapBefore(glyph));
  text.startsWord = parts.value_or(false);
  return parts.has_value();
}

void LineReader::Recognise(LineText& line, const EnginePicture& picture, LineRecogniser& recogniser,
                           const std::string& language) const {
  line.readings = recogniser.Read(DrawLine(picture, line.line));
  line.glyphsAsFound = line.line.glyphs;
  line.recognised = true;
  LayReadings(line, language);
  FindNotes(line, &picture);
  FixBars(line, language);
}

void LineReader::LayReadings(LineText& line, const std::string& language) const {
  line.line.glyphs = line.glyphsAsFound;
  line.texts.clear();
  line.joined.clear();
  JoinKnownParts(line);
  std::vector<std::u32string> known;
  for (const Glyph& glyph : line.line.glyphs) known.push_back(KnownText(glyph, line.line.metrics));
  const std::vector<Match> matches =
      AlignReadings(line.readings, line.line.glyphs, line.line.metrics, knowledge_.widths, known);
  for (std::size_t i = 0; i < matches.size(); ++i) {
    line.JoinGlyphs(i, matches[i].glyphs);
    line.texts.push_back(TextOf(matches[i], line.readings));
    FixByShape(line.texts.back(), line.line.glyphs[i], line.line.metrics);
    FixBracket(line.texts.back(), line.line.glyphs[i], line.line);
    if (language == "en") continue;
    FixAccent(line.texts.back(), line.line.glyphs[i], line.line);
    const GlyphPlace place = PlaceOf(line.line.glyphs[i].box, line.line.metrics);
    line.texts.back().text = WithCedilla(line.texts.back().text, place.drop > kCedilla);
  }
}

void LineReader::FixAccent(GlyphText& text, const Glyph& glyph, const GlyphLine& line) const {
  const MarksAbove marks = FindMarksAbove(glyph, line.metrics.baseline, line.slant);
  if (!AccentIsWrong(text.text, marks)) return;
  const Glyph bare = WithoutMarks(glyph);
  GlyphText base;
  if (text.text.size() == 1) base.text = Decompose(text.text[0]).base;
  // Digits and capitals are what accented letters are taken for.
  const std::u32string known = KnownText(bare, line.metrics);
  if (known.size() == 1) base.text = known;
  FixByShape(base, bare, line.metrics);
  if (base.text.size() != 1) return;
  const Accent accent = marks.count == 2 ? Accent::kDiaeresis : marks.shape;
  const char32_t fixed = Compose({base.text[0], accent});
  if (fixed != 0) text.text = fixed;
}

std::u32string LineReader::KnownText(const Glyph& glyph, const LineMetrics& metrics) const {
  const auto id = knowledge_.patterns.Find(PatternOf(glyph, metrics));
  if (!id) return {};
  const Votes& votes = knowledge_.patterns.VotesOf(*id);
  return votes.Count() >= kWellKnown && votes.Share() >= kKnownShare ? votes.Best()
                                                                     : std::u32string();
}

void LineReader::TakeKnown(LineText& line, std::size_t glyph) const {
  GlyphText& text = line.texts[glyph];
  const GlyphPattern pattern = PatternOf(line.line.glyphs[glyph], line.line.metrics);
  const std::u32string taught = taught_.TextOf(pattern);
  if (!taught.empty()) {
    text.text = taught;
    text.fixed = true;
    return;
  }
  const auto id = knowledge_.patterns.Find(pattern);
  const bool unsure = text.confidence < kDoubtfulConfidence;
  text.doubtful = unsure;
  if (!id) return;
  const Votes& votes = knowledge_.patterns.VotesOf(*id);
  if (votes.Count() == 0) return;
  const std::u32string best = votes.Best();
  if (best != text.text && votes.Share() >= Required(text.text, best, votes.Count()))
    text.text = best;
  const bool bar = IsBarText(text.text) && IsBarText(best);
  text.doubtful =
      (votes.Count() <= kFewVotes && unsure) || (!bar && votes.ShareOf(text.text) < kDoubtfulShare);
}

void LineReader::PartWords(LineText& line) const {
  if (line.texts.empty()) return;
  line.texts[0].startsWord = true;
  const int dots = LeastDotGap(line);
  for (std::size_t i = 1; i < line.texts.size(); ++i) {
    if (spaceWidth_ > 0) {
      line.texts[i].startsWord = line.GapBefore(i) >= spaceWidth_;
      continue;
    }
    if (IsDotPair(line, i)) {
      line.texts[i].startsWord = line.GapBefore(i) > kWiderThanDots * dots + 1;
      continue;
    }
    const bool hasRoom = line.texts[i].text == U"1" || line.texts[i - 1].text == U"1";
    const auto parts = knowledge_.spaces.Judge(line.RelativeGapBefore(i),
                                               1.0 / line.line.metrics.xHeight, hasRoom);
    if (parts) line.texts[i].startsWord = *parts;
  }
}

void LineReader::Settle(LineText& line, const std::string& language) const {
  if (line.recognised) {
    LayReadings(line, language);
    for (std::size_t i = 0; i < line.texts.size(); ++i) TakeKnown(line, i);
    PartWords(line);
  }
  FindNotes(line);
  FixBars(line, language);
}

void LineReader::Append(const LineText& line, EngineResult& result) const {
  std::u32string plain;
  PixelBox last;
  for (std::size_t i = 0; i < line.texts.size(); ++i) {
    const GlyphText& text = line.texts[i];
    const std::vector<PixelBox> boxes =
        CutGlyph(line.line.glyphs[i], text.text, line.line, knowledge_.widths);
    if (i > 0 && text.startsWord) {
      plain += U' ';
      const int right = std::max(boxes[0].x0 - 1, last.x1 + 1);
      result.boxes.push_back({last.x1 + 1, right, std::min(last.y0, boxes[0].y0),
                              std::max(last.y1, boxes[0].y1), U' ', false});
    }
    for (std::size_t part = 0; part < boxes.size(); ++part) {
      const char32_t ch = text.text.empty()              ? 0
                          : text.text[part] == kNoteSign ? kMusicNote
                                                         : text.text[part];
      plain += ch == 0 ? kUnknownCharacter : ch;
      const PixelBox& box = boxes[part];
      result.boxes.push_back({box.x0, box.x1, box.y0, box.y1, ch, text.doubtful});
      last = box;
    }
  }
  result.boxes.push_back({last.x1 + 1, last.x1 + 1, last.y0, last.y1, kLineEnd, false});
  result.lines.push_back({ToUtf8(plain), line.line.metrics.baseline, line.line.slant});
}

}  // namespace quillomar
