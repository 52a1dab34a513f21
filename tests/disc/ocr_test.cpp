// Text read from an authored disc is the text that went in; what is erased is gone for FFmpeg.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>

#include "disc/disc_test.h"
#include "support/message_collector.h"

namespace quillomar {
namespace {

using test::Cli;
using test::DiscCopy;
using test::FfmpegSubtitle;

constexpr double kFrame = 0.045;  // seconds; a unit of delay more

constexpr double kNoEnd = -1;

struct Truth {
  double start = 0, end = 0;  // seconds
  std::string text;           // lines that each end in a line break
};

// Seconds at which each program chain of a disc begins.
std::map<int, double> ChainStarts(const std::string& text, double frame) {
  const std::regex vob(R"re("pgc": (\d+), "frames": (\d+))re");
  std::map<int, double> starts;
  double end = 0;
  for (std::sregex_iterator match(text.begin(), text.end(), vob), none; match != none; ++match) {
    starts.try_emplace(std::stoi((*match)[1]), end);
    end += std::stod((*match)[2]) * frame;
  }
  return starts;
}

std::vector<Truth> ReadTruth(const std::string& path, double frame) {
  const Bytes bytes = test::FileBytes(path);
  const std::string text(bytes.begin(), bytes.end());
  auto starts = ChainStarts(text, frame);
  const std::regex subtitle(
      R"re("pgc": (\d+), .*"start": ([\d.]+), "end": ([\d.]+|null), .*"lines": \[(("([^"\\]|\\.)*"(, )?)+)\])re");
  const std::regex line(R"re("(([^"\\]|\\.)*)")re");
  std::vector<Truth> all;
  for (std::sregex_iterator match(text.begin(), text.end(), subtitle), end; match != end; ++match) {
    const double chain = starts[std::stoi((*match)[1])];
    const std::string last = (*match)[3];
    Truth truth{chain + std::stod((*match)[2]), last == "null" ? kNoEnd : chain + std::stod(last),
                ""};
    const std::string lines = (*match)[4];
    for (std::sregex_iterator each(lines.begin(), lines.end(), line); each != end; ++each) {
      truth.text += std::regex_replace((*each)[1].str(), std::regex(R"(\\(.))"), "$1") + "\n";
    }
    all.push_back(truth);
  }
  return all;
}

double Seconds(const std::smatch& match, std::size_t first) {
  const auto number = [&](std::size_t i) { return std::stod(match[first + i]); };
  return number(0) * 3600 + number(1) * 60 + number(2) + number(3) / 1000;
}

std::vector<Truth> ReadSrt(const std::string& path) {
  const Bytes bytes = test::FileBytes(path);
  const std::string text(bytes.begin(), bytes.end());
  const std::regex record(
      R"(\d+\n(\d+):(\d+):(\d+),(\d+) --> (?:\?|(\d+):(\d+):(\d+),(\d+))\n((.+\n)+)\n)");
  std::vector<Truth> all;
  for (std::sregex_iterator match(text.begin(), text.end(), record), end; match != end; ++match) {
    const double last = (*match)[5].matched ? Seconds(*match, 5) : kNoEnd;
    all.push_back({Seconds(*match, 1), last, (*match)[9]});
  }
  return all;
}

class ReadDisc : public testing::Test {
 protected:
  void SetUp() override {
    if (!DiscCopy::Available()) GTEST_SKIP() << "QUILLOMAR_DISCS is not set";
    disc_ = std::make_unique<DiscCopy>("ntsc");
    test::MessageCollector messages;
    if (!MakeOcrEngine(messages.files, messages.reporter, "")) GTEST_SKIP() << "no OCR engine";
  }
  using Key = std::pair<std::int64_t, int>;  // PTS and stream

  // What is to be seen; FFmpeg leaves out what is blank.
  std::map<Key, FfmpegSubtitle> Pictures() {
    std::map<Key, FfmpegSubtitle> pictures;
    for (const auto& each : test::ReadWithFfmpeg(disc_->TitleVobs())) {
      pictures[{each.pts, each.streamId}] = each;
    }
    return pictures;
  }
  std::map<Key, std::string> Texts() {
    test::OpenEditor editor(disc_->TitleVobs());
    Session& session = editor->Context();
    session.makeOcrEngine = [&] { return MakeOcrEngine(session.files, session.reporter, ""); };
    editor->Run(CommandId::kOcrSelected);
    std::map<Key, std::string> texts;
    for (const UnitPointer& unit : editor->Doc().Units()) {
      std::string& text = texts[{unit->state.pts, unit->SubStreamId()}];
      for (const std::string& line : unit->ocrText) text += line + "\n";
    }
    return texts;
  }

  std::unique_ptr<DiscCopy> disc_;
};

TEST_F(ReadDisc, TextAndTimesThatWentInComeOut) {
  struct Standard {
    const char* disc;
    double frame, srtClock;
  };
  const std::string discs = EnvironmentVariable("QUILLOMAR_DISCS").value_or("");
  for (const Standard& standard :
       {Standard{"ntsc", 1001.0 / 30000, 90000.0 / 90090.0}, Standard{"pal", 1.0 / 25, 1}}) {
    const DiscCopy disc(standard.disc);
    const std::string path = disc.Path("text.srt");
    ASSERT_EQ(Cli({"ocr", "--srt", path}, disc.TitleVobs()).exitCode, 0);
    const auto truth = ReadTruth(discs + "/" + standard.disc + "/truth.json", standard.frame);
    const auto found = ReadSrt(path);
    ASSERT_EQ(truth.size(), 35U);
    EXPECT_EQ(found.size(), truth.size());
    for (const Truth& each : truth) {
      const auto same = std::find_if(found.begin(), found.end(), [&](const Truth& srt) {
        return srt.text == each.text &&
               std::abs(srt.start - each.start * standard.srtClock) < 0.002;
      });
      ASSERT_NE(same, found.end()) << standard.disc << each.start << "\n" << each.text;
      const double last = each.end == kNoEnd ? kNoEnd : each.end * standard.srtClock;
      EXPECT_NEAR(same->end, last, kFrame) << each.text;
    }
  }
}

int BottomOf(const FfmpegSubtitle& picture) {
  return picture.y + picture.height;
}

int MiddleOf(const FfmpegSubtitle& picture) {
  return picture.x + picture.width / 2;
}

class ErasedDisc : public ReadDisc, public testing::WithParamInterface<const char*> {};

TEST_P(ErasedDisc, TextIsGoneAndTheRestIsInItsPlace) {
  disc_ = std::make_unique<DiscCopy>(GetParam());
  const auto before = Pictures();
  const auto textBefore = Texts();
  ASSERT_EQ(Cli({"erase-hi", "--yes"}, disc_->TitleVobs()).exitCode, 0);
  const auto after = Pictures();
  const auto textAfter = Texts();
  // Whole text before: what is left; all others stay.
  const std::map<std::string, std::string> left = {
      {"[DOOR SLAMS]\n", ""},
      {"[CLAQUEMENT DE PORTE]\n", ""},
      {"(laughs)\n", ""},
      {"(il rit)\n", ""},
      {"WOMAN (whispering): Listen...\n[FOOTSTEPS ABOVE]\n", "WOMAN : Listen...\n"},
      {"FEMME (tout bas) : \xC3\x89"
       "coute...\n[PAS \xC3\x80 L'\xC3\x89TAGE]\n",
       "FEMME : \xC3\x89"
       "coute...\n"}};
  std::size_t changed = 0;
  for (const auto& [key, was] : before) {
    const std::string& text = textBefore.at(key);
    const auto rest = left.find(text);
    const auto now = after.find(key);
    if (rest != left.end()) ++changed;
    const bool blank = rest != left.end() && rest->second.empty();
    ASSERT_EQ(now == after.end(), blank) << text;
    if (blank) continue;
    if (rest == left.end()) {
      EXPECT_EQ(now->second.types, was.types) << text;
      continue;
    }
    EXPECT_EQ(textAfter.at(key), rest->second);
    EXPECT_EQ(BottomOf(now->second), BottomOf(was)) << text;
    // Half of a gap between words goes with either side.
    EXPECT_NEAR(MiddleOf(now->second), MiddleOf(was), 8) << text;
  }
  EXPECT_EQ(changed, left.size());
}

INSTANTIATE_TEST_SUITE_P(Discs, ErasedDisc, testing::Values("ntsc", "pal"), test::DiscName);

}  // namespace
}  // namespace quillomar
