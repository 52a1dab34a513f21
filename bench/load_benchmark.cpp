// What a title domain of nine pieces, mostly holes, with many subpictures in 32 streams costs:
// opening, walking, editing all, taking that back, saving.
//
//   bench_load FOLDER COUNT GIB    makes the domain in FOLDER and prints a row of a table
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "author/ifo_builder.h"
#include "author/pack_builder.h"
#include "author/spu_builder.h"
#include "base/format.h"
#include "base/platform.h"
#include "cli/cli_front_end.h"
#include "editor/editor.h"

namespace quillomar {
namespace {

constexpr std::uint32_t kPieces = 9;
constexpr std::uint64_t kGib = std::uint64_t{1} << 30;
constexpr std::uint64_t kTicksPerGroup = 10 * 90'000;
constexpr std::uint64_t kPtsAfterClock = 13'500;
constexpr int kViews = 200;

// A nav pack and a subpicture of each stream, as often as the count asks, evenly over the domain.
class Domain {
 public:
  Domain(FileSystem& files, std::string folder, std::uint32_t count, std::uint64_t gib)
      : files_(files),
        folder_(std::move(folder)),
        groups_((count + kSubpictureStreams - 1) / kSubpictureStreams),
        pieceSectors_(static_cast<std::uint32_t>(gib * kGib / kPieces / kSectorSize)),
        step_(pieceSectors_ * kPieces / groups_),
        unit_(
            author::BuildSpu(author::Subtitle(author::RandomRows(1, 480, 60, 24), 120, 380, 200))) {
  }

  std::vector<std::string> Make() {
    (void)files_.CreateFolder(folder_);
    std::vector<std::string> paths;
    for (std::uint32_t piece = 1; piece <= kPieces; ++piece) {
      paths.push_back(folder_ + Format("/VTS_01_%u.VOB", piece));
      MakePiece(paths.back(), piece - 1);
    }
    Put(*files_.Open(folder_ + "/VTS_01_0.IFO", OpenMode::kCreate), 0, Ifo());
    return paths;
  }

 private:
  static void Put(File& file, std::uint64_t sector, ByteSpan bytes) {
    if (!Failed(file.WriteAt(sector * kSectorSize, bytes))) return;
    std::fprintf(stderr, "the domain cannot be written\n");
    std::exit(1);
  }

  void MakePiece(const std::string& path, std::uint32_t piece) {
    const auto file = files_.Open(path, OpenMode::kCreate);
    const std::uint32_t first = piece * pieceSectors_;
    for (std::uint32_t group = 0; group < groups_; ++group) {
      const std::uint32_t lba = group * step_;
      if (lba < first || lba >= first + pieceSectors_) continue;
      const Bytes sectors = Group(group, lba);
      // A group that does not fit is left out.
      if (lba - first + sectors.size() / kSectorSize > pieceSectors_) continue;
      Put(*file, lba - first, sectors);
    }
    Put(*file, pieceSectors_ - 1, Bytes(kSectorSize));
  }

  Bytes Group(std::uint32_t group, std::uint32_t lba) const {
    const std::uint64_t clock = (group + 1) * kTicksPerGroup;
    const auto start = static_cast<std::uint32_t>(clock);
    author::VobBuilder vob;
    vob.Add(author::MakeNavPack(
        {clock, lba, start, start + static_cast<std::uint32_t>(kTicksPerGroup)}));
    vob.Add(author::MakeVideoPack(clock, {author::SequenceHeader(720, 576, 3),
                                          author::SequenceExtension(), author::PictureHeader(1)}));
    for (int stream = 0; stream < kSubpictureStreams; ++stream) {
      vob.Add(author::MakeSubpicturePacks(unit_, {stream, clock + kPtsAfterClock, clock}));
    }
    return vob.Image();
  }

  Bytes Ifo() const {
    const std::uint32_t last = pieceSectors_ * kPieces - 1;
    author::ChainSpec chain;
    chain.cells = {{{1, 1}, 0, 0, (groups_ - 1) * step_, last}};
    for (int i = 0; i < kPixelTypes; ++i) {
      chain.clut.at(static_cast<std::size_t>(i)) = {static_cast<std::uint8_t>(16 + 60 * i), 128,
                                                    128};
    }
    author::IfoSpec spec;
    for (int stream = 0; stream < kSubpictureStreams; ++stream) {
      chain.subpictures[stream] = 0x80000000U | static_cast<std::uint32_t>(stream) << 24;
      spec.title.subpictures.emplace_back("en");
    }
    spec.titleChains = {chain};
    for (std::uint32_t group = 0; group < groups_; ++group)
      spec.titleVobus.push_back(group * step_);
    return author::BuildIfo(spec);
  }

  FileSystem& files_;
  std::string folder_;
  std::uint32_t groups_;
  std::uint32_t pieceSectors_;
  std::uint32_t step_;
  Bytes unit_;
};

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

long PeakMib() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

int Run(const std::string& folder, std::uint32_t count, std::uint64_t gib) {
  const auto files = MakeDiskFileSystem();
  const auto paths = Domain(*files, folder, count, gib).Make();
  Session session(*files, folder + "/state");
  session.fastOpen = FastOpen::kNever;
  const auto yes = [](const std::string&) { return true; };
  const auto show = [](const std::string& text) {
    std::fprintf(stderr, "%s\n", text.c_str());
    return 0;
  };
  session.reporter.InstallHooks({show, yes, yes});
  CliFrontEnd frontEnd;
  InlineJobRunner runner;
  Editor editor(session, frontEnd, runner);

  const long before = PeakMib();
  std::array<double, 3> opens{};
  for (double& open : opens) open = Milliseconds([&] { editor.OpenFiles(paths, false); });
  std::sort(opens.begin(), opens.end());
  const long opened = PeakMib();
  const double walk = Milliseconds([&] {
    for (int i = 0; i < kViews; ++i) editor.GoTo(editor.CurrentView().count * i / kViews);
  });
  editor.SetColour(1, 3);
  editor.SetForced(true);
  const double apply = Milliseconds([&] { editor.ApplyToAll(ChoicesOf(editor.Last())); });
  const long edited = PeakMib();
  const double undo = Milliseconds([&] { editor.Run(CommandId::kUndo); });
  editor.Run(CommandId::kRedo);
  const double save = Milliseconds([&] { editor.SaveAll(); });
  const int units = editor.Doc().UnitCount();
  if (editor.Doc().Modified() || units == 0) {
    std::fprintf(stderr, "not saved\n");
    return 1;
  }
  std::printf("| %d | %d | %.0f | %.2f | %.0f | %.1f | %.0f | %ld | %ld | %ld |\n", units,
              static_cast<int>(gib), opens[1], walk / kViews, apply, undo, save, opened - before,
              edited - before, PeakMib() - before);
  return 0;
}

}  // namespace
}  // namespace quillomar

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: bench_load FOLDER COUNT GIB\n");
    return 2;
  }
  return quillomar::Run(argv[1], static_cast<std::uint32_t>(std::atoi(argv[2])),
                        static_cast<std::uint64_t>(std::atoi(argv[3])));
}
