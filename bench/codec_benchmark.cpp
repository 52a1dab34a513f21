// Decoding and encoding of all subpictures of a disc, beside FFmpeg's decoder over the same units.
//
//   bench_codec DISC_FOLDER [Google Benchmark options]

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <benchmark/benchmark.h>

#include <iostream>

#include "base/platform.h"
#include "cli/cli_front_end.h"
#include "dvd/vob_name.h"
#include "editor/editor.h"
#include "spu/run_length.h"

namespace quillomar {
namespace {

void CountUnits(benchmark::State& state, const UnitList& units) {
  state.counters["units"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(units.size()),
      benchmark::Counter::kIsRate);
}

void Decode(benchmark::State& state, const UnitList& units, const SpuContext& context) {
  for (auto _ : state) {
    for (const UnitPointer& unit : units) {
      SubpictureUnit& decoded = Document::Unrecorded(unit);
      decoded.state.decoded = false;  // so that the statistics are gathered, as at a first decode
      if (Failed(DecodeBitmap(decoded, context))) state.SkipWithError("a unit did not decode");
    }
  }
  CountUnits(state, units);
}

void Encode(benchmark::State& state, const UnitList& units) {
  for (auto _ : state) {
    for (const UnitPointer& unit : units) {
      const ContentBox whole{0, 0, static_cast<std::int16_t>(unit->state.width - 1),
                             static_cast<std::int16_t>(unit->state.height - 1)};
      benchmark::DoNotOptimize(EncodeBitmap(*unit, whole));
    }
  }
  CountUnits(state, units);
}

void FfmpegDecode(benchmark::State& state, const UnitList& units) {
  const AVCodec* const codec = avcodec_find_decoder(AV_CODEC_ID_DVD_SUBTITLE);
  AVCodecContext* context = avcodec_alloc_context3(codec);
  AVPacket* packet = av_packet_alloc();
  if (avcodec_open2(context, codec, nullptr) < 0) state.SkipWithError("no FFmpeg decoder");
  std::vector<Bytes> padded;
  for (const UnitPointer& unit : units) {
    padded.push_back(unit->state.bytes);
    padded.back().resize(unit->state.bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE);
  }
  for (auto _ : state) {
    for (Bytes& bytes : padded) {
      packet->data = bytes.data();
      packet->size = static_cast<int>(bytes.size() - AV_INPUT_BUFFER_PADDING_SIZE);
      packet->pts = 0;
      AVSubtitle subtitle{};
      int got = 0;
      if (avcodec_decode_subtitle2(context, &subtitle, &got, packet) < 0) {
        state.SkipWithError("FFmpeg did not decode a unit");
      }
      avsubtitle_free(&subtitle);
    }
  }
  CountUnits(state, units);
  av_packet_free(&packet);
  avcodec_free_context(&context);
}

// How the encoder's codes compare in size with those that the disc came with.
void PrintSizes(const UnitList& units) {
  std::size_t found = 0;
  std::size_t encoded = 0;
  int larger = 0;
  for (const UnitPointer& unit : units) {
    const SpuState& state = unit->state;
    const std::size_t before =
        state.dcsqtOffset - kSpuHeaderSize - static_cast<std::size_t>(std::max(state.spareRoom, 0));
    const ContentBox whole{0, 0, static_cast<std::int16_t>(state.width - 1),
                           static_cast<std::int16_t>(state.height - 1)};
    const std::size_t after = EncodeBitmap(*unit, whole).codes.size();
    found += before;
    encoded += after;
    if (after > before) ++larger;
  }
  std::cout << units.size() << " units; run-length codes on the disc " << found
            << " bytes, encoded anew " << encoded << " bytes, larger than found: " << larger
            << '\n';
}

}  // namespace
}  // namespace quillomar

int main(int argc, char** argv) {
  using namespace quillomar;
  benchmark::Initialize(&argc, argv);
  if (argc != 2) {
    std::cerr << "usage: bench_codec VIDEO_TS_FOLDER [benchmark options]\n";
    return 2;
  }
  const auto files = MakeDiskFileSystem();
  Session session(*files, StateFolder());
  CliFrontEnd frontEnd;
  InlineJobRunner runner;
  Editor editor(session, frontEnd, runner);
  editor.OpenFiles({std::string(argv[1]) + "/" + VobName(LargestTitleSet(*files, argv[1]), 1)},
                   true);
  const UnitList units = editor.Doc().Units();
  if (units.empty()) {
    std::cerr << "no subpictures in " << argv[1] << '\n';
    return 1;
  }
  const SpuContext context = editor.Doc().Context();
  benchmark::RegisterBenchmark("quillomar decode",
                               [&](benchmark::State& state) { Decode(state, units, context); });
  benchmark::RegisterBenchmark("ffmpeg dvdsub decode",
                               [&](benchmark::State& state) { FfmpegDecode(state, units); });
  benchmark::RegisterBenchmark("quillomar encode",
                               [&](benchmark::State& state) { Encode(state, units); });
  benchmark::RunSpecifiedBenchmarks();
  PrintSizes(units);
  return 0;
}
