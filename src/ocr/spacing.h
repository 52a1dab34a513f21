#pragma once

#include <optional>
#include <vector>

namespace quillomar {

// Where words part, learnt from gaps that a recogniser has judged. Gaps are in x-heights.
class SpaceModel {
 public:
  void Learn(double gap, bool partsWords);
  // Finds the threshold of least error; to be called after learning.
  void Settle();
  // Whether a gap parts words as far as its width tells; nothing when that is too near to the
  // threshold or the threshold is not known. `hasRoom`: one of its neighbours keeps the others
  // at a distance.
  [[nodiscard]] std::optional<bool> Judge(double gap, double pixel, bool hasRoom) const;
  // As Judge, for lines that no recogniser reads: unsure only close to the threshold.
  [[nodiscard]] std::optional<bool> JudgeAlone(double gap) const;

 private:
  struct Gap {
    double width;
    bool partsWords;
  };
  std::vector<Gap> gaps_;
  std::optional<double> threshold_;
};

}  // namespace quillomar
