// An arbitrary .sup file is loaded, saved under another name and loaded again, then saved back into
// itself.
#include "spu/sup_file.h"

#include <algorithm>

#include "author/spu_builder.h"
#include "fuzz_target.h"
#include "support/direct_transaction.h"
#include "support/memory_files.h"

namespace quillomar::fuzz {
namespace {

constexpr const char* kPath = "/in.sup";
constexpr const char* kCopy = "/copy.sup";
constexpr const char* kAgain = "/again.sup";

class SupRun {
 public:
  explicit SupRun(ByteSpan content) { files_.Put(kPath, Bytes(content.begin(), content.end())); }

  void Run() {
    const SupFile sup = Load(kPath);
    CheckUnits(sup, files_.Content(kPath));
    SaveAs(kCopy, sup);
    const SupFile copy = Load(kCopy);
    Require(copy.units.size() == sup.units.size() && copy.standard == sup.standard);
    SaveAs(kAgain, copy);
    Require(files_.Content(kAgain) == files_.Content(kCopy));
    SaveBack(sup);
  }

 private:
  SupFile Load(const char* path) {
    auto sup = LoadSup(files_, path, reporter_, limit_);
    Require(sup.has_value());
    return std::move(*sup);
  }

  static void CheckUnits(const SupFile& sup, const Bytes& content) {
    std::int64_t end = 0;
    for (const auto& unit : sup.units) {
      const SpuState& state = unit->state;
      Require(unit->supPosition >= end);
      const std::int64_t begin = unit->supPosition + static_cast<std::int64_t>(kSupHeaderSize);
      end = begin + state.TotalSize();
      Require(end <= static_cast<std::int64_t>(content.size()));
      Require(std::equal(state.bytes.begin(), state.bytes.end(), content.begin() + begin));
      Require(!state.sequences.empty() && state.dcsqtOffset < state.TotalSize());
      Require(state.height <= FrameHeight(sup.standard));
    }
  }

  SupPositions Save(const std::shared_ptr<File>& file, const SupFile& sup) {
    const auto transaction = source_.Begin();
    const auto positions = SaveSup(file, sup.units, *transaction, Context(sup));
    Require(positions && !Failed(transaction->Commit()));
    return *positions;
  }
  void SaveAs(const char* path, const SupFile& sup) {
    Save(source_.Begin()->OpenOrCreate(path), sup);
  }

  void SaveBack(const SupFile& sup) {
    const SupPositions positions = Save(sup.file, sup);
    Require(!Failed(TakeSavedSup(*sup.file, sup.units, positions, Context(sup))));
    const Bytes& written = files_.Content(kPath);
    const Bytes& copy = files_.Content(kCopy);
    Require(written.size() >= copy.size() && std::equal(copy.begin(), copy.end(), written.begin()));
  }

  SpuContext Context(const SupFile& sup) { return {reporter_, limit_, sup.standard}; }

  test::MemoryFileSystem files_;
  Reporter reporter_{files_};
  ReportLimit limit_{reporter_};
  test::DirectTransactionSource source_{files_};
};

Bytes Record(const Bytes& unit) {
  Bytes record = {'S', 'P', 1, 2, 3, 4, 0, 0, 0, 0};
  record.insert(record.end(), unit.begin(), unit.end());
  return record;
}

}  // namespace

std::vector<Bytes> Seeds() {
  author::SpuDescription subtitle = author::Subtitle({"0011", "0230", "1111"}, 100, 400, 90);
  subtitle.spareBytes = 7;
  const Bytes first = Record(author::BuildSpu(subtitle));
  subtitle.y = 500;
  subtitle.sequences[1].commands.push_back(
      author::ColconCommand({{500, 501, {{101, {3, 2, 1, 0}, {15, 15, 15, 0}}}}}));
  const Bytes second = Record(author::BuildSpu(subtitle));
  Bytes both = first;
  both.insert(both.end(), second.begin(), second.end());
  return {first, both};
}

}  // namespace quillomar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillomar::fuzz::SupRun(quillomar::ByteSpan(data, size)).Run();
  return 0;
}
