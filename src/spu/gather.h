#pragma once

#include "dvd/pack_consumer.h"
#include "dvd/vob_file_set.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"
#include "spu/unit_assembly.h"

namespace quillomar {

// Gathers one unit of a stream from its packs, in the order of the multiplex.
class SpuGatherer {
 public:
  explicit SpuGatherer(const VobFileSet& set) : set_(set) {}

  // Takes the next pack; kComplete leaves the whole, parsed unit in Unit(), kFailed means that what
  // was gathered has been dropped. A new unit that begins before the last one is whole replaces it,
  // with a message. The unit takes place, number and buttons from `place`; CLUT, global time and
  // the number in its stream are the caller's to set.
  GatherResult GatherPack(SectorView pack, const PackContext& place, const SpuContext& context);

  [[nodiscard]] SubpictureUnit& Unit() { return unit_; }
  // Forgets a unit in progress.
  void Reset();

 private:
  [[nodiscard]] bool BeginUnit(SectorView pack, const PackContext& place,
                               const SpuContext& context);
  GatherResult AddPack(SectorView pack, const PackContext& place, const SpuContext& context);
  GatherResult FinishUnit(const SpuContext& context);
  GatherResult RefuseStart(const PackContext& place, const SpuContext& context);
  GatherResult RefuseSize(const SpuContext& context);
  void TakeButtons(const PackContext& place);
  // The unit and its first pack, as the messages name them.
  [[nodiscard]] std::string Name(int number, const SpuPack& pack) const;

  const VobFileSet& set_;
  SubpictureUnit unit_;
  UnitAssembly assembly_;
  bool inProgress_ = false;
  bool skipsRest_ = false;  // the packs that follow belong to a unit refused for its size
};

}  // namespace quillomar
