#include "editor/analysis.h"

#include "base/platform.h"

namespace quillomar {
namespace {

void AddAll(std::vector<std::uint32_t>& lbas, const std::vector<std::uint32_t>& more) {
  lbas.insert(lbas.end(), more.begin(), more.end());
}

// Times count from the first VOBU and run on over every restart.
void AddLandmarks(const ScanResults& results, std::vector<std::uint32_t>& lbas) {
  if (results.videoLba) lbas.push_back(*results.videoLba);
  if (!results.vobus.empty()) lbas.push_back(results.vobus.front().currentLba);
  AddAll(lbas, results.timeRestarts);
  AddAll(lbas, results.highlightNavs);
}

}  // namespace

AnalysisCache AnalysisOf(const Document& document) {
  AnalysisCache cache;
  for (const VobFile& vob : document.Files().Files()) cache.paths.push_back(AbsolutePath(vob.path));
  const UnitList units = document.Units();
  if (units.empty()) return cache;
  AddLandmarks(document.Results(), cache.lbas);
  for (const UnitPointer& unit : units) {
    cache.lbas.push_back(unit->navLba);
    for (const SpuPack& pack : unit->packs) cache.lbas.push_back(pack.lba);
  }
  return cache;
}

}  // namespace quillomar
