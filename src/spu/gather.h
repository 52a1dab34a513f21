#pragma once

#include "dvd/pack_consumer.h"
#include "dvd/vob_file_set.h"
#include "spu/spu_context.h"
#include "spu/subpicture_unit.h"

namespace quillomar {

// Gathers one unit of a stream from its packs, in the order of the multiplex.
class SpuGatherer {
 public:
  explicit SpuGatherer(const VobFileSet& set) : set_(set) {}

  // Takes the next pack; kComplete leaves the whole, parsed unit in Unit(), kFailed means that what
  // was gathered is to be dropped. A new unit that begins before the last one is whole replaces it,
  // with a message.
  GatherResult GatherPack(SectorView pack, const PackContext& place, const SpuContext& context);

  [[nodiscard]] SubpictureUnit& Unit() { return unit_; }
  void Reset();

 private:
  const VobFileSet& set_;
  SubpictureUnit unit_;
  std::size_t gathered_ = 0;
};

}  // namespace quillomar
