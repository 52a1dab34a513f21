#pragma once

#include <string>
#include <vector>

#include "base/file.h"

namespace quillomar::test {

// A copy of an authored disc that a test may change; gone when the test ends.
class DiscCopy {
 public:
  // `name` is a folder of the discs that the environment variable QUILLOMAR_DISCS names.
  explicit DiscCopy(const std::string& name);
  ~DiscCopy();
  DiscCopy(const DiscCopy&) = delete;
  DiscCopy& operator=(const DiscCopy&) = delete;

  [[nodiscard]] std::string Path(const std::string& file) const { return folder_ + "/" + file; }
  [[nodiscard]] const std::string& Folder() const { return folder_; }
  // VOBs of title set 1: the title domain's pieces in order, or the menu.
  [[nodiscard]] std::vector<std::string> TitleVobs() const;
  [[nodiscard]] std::vector<std::string> MenuVobs() const { return {Path("VTS_01_0.VOB")}; }

  static bool Available();

 private:
  std::string folder_;
};

Bytes FileBytes(const std::string& path);

}  // namespace quillomar::test
