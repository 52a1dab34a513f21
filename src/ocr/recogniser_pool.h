#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ocr/line_recogniser.h"

namespace quillomar {

// The recognisers of each worker, one for each language, made when they are first wanted.
class RecogniserPool {
 public:
  RecogniserPool(std::unique_ptr<LineRecogniserSource> source, std::size_t workers)
      : source_(std::move(source)), workers_(workers) {}
  // Null when there is none. Workers may ask at once, each for itself.
  [[nodiscard]] LineRecogniser* For(std::size_t worker, const std::string& language) {
    auto [place, isNew] = workers_[worker].try_emplace(language);
    if (isNew) place->second = source_->Make(language);
    return place->second.get();
  }

 private:
  std::unique_ptr<LineRecogniserSource> source_;
  std::vector<std::map<std::string, std::unique_ptr<LineRecogniser>>> workers_;
};

}  // namespace quillomar
