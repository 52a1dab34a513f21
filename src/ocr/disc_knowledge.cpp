#include "ocr/disc_knowledge.h"

namespace quillomar {
namespace {

constexpr int kSureOfOne = 2;  // sightings

}  // namespace

void JoinModel::Learn(const Pair& pair, bool one) {
  Count& count = counts_[pair];
  ++(one ? count.one : count.apart);
}

JoinModel::Answer JoinModel::Ask(const Pair& pair) const {
  const auto found = counts_.find(pair);
  if (found == counts_.end() || found->second.one == 0) return Answer::kApart;
  const bool sure = found->second.apart == 0 && found->second.one >= kSureOfOne;
  return sure ? Answer::kOne : Answer::kUnsure;
}

}  // namespace quillomar
