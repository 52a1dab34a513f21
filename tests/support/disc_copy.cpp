#include "support/disc_copy.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "base/platform.h"

namespace quillomar::test {
namespace {

std::string DiscsFolder() {
  return EnvironmentVariable("QUILLOMAR_DISCS").value_or("");
}

}  // namespace

bool DiscCopy::Available() {
  return !DiscsFolder().empty();
}

DiscCopy::DiscCopy(const std::string& name) {
  std::string pattern = testing::TempDir() + "/discXXXXXX";
  folder_ = mkdtemp(pattern.data());
  std::filesystem::copy(DiscsFolder() + "/" + name + "/VIDEO_TS", folder_,
                        std::filesystem::copy_options::recursive);
}

DiscCopy::~DiscCopy() {
  std::error_code error;
  std::filesystem::remove_all(folder_, error);
}

std::vector<std::string> DiscCopy::TitleVobs() const {
  std::vector<std::string> paths;
  for (int piece = 1; piece <= 9; ++piece) {
    const std::string path = Path("VTS_01_" + std::to_string(piece) + ".VOB");
    if (std::filesystem::exists(path)) paths.push_back(path);
  }
  return paths;
}

Bytes FileBytes(const std::string& path) {
  constexpr std::uint64_t kLimit = std::uint64_t{1} << 30;
  return ReadWholeFile(*MakeDiskFileSystem(), path, kLimit).value_or(Bytes());
}

}  // namespace quillomar::test
