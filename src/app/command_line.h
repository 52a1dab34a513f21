#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/file.h"

// The window's command line: files and options in any order.
//
//   -A   opens the largest title set of the first file's folder as a whole
//   -F   opens the whole domain of the first file
namespace quillomar {

inline constexpr std::size_t kMaxCommandLineFiles = 10;
inline constexpr const char* kUnsupportedFileText =
    "Error, Quillomar can only open sup or vob files";

struct StartUpRequest {
  bool automatic = false;
  bool openFullDomain = false;
  std::vector<std::string> files;  // at most 10
};

// Takes the arguments without the program's own name. Options that it does not know and files past
// the tenth are left out.
[[nodiscard]] StartUpRequest ParseCommandLine(std::span<const std::string> arguments);

// With -A, or with an IFO as the first file: replaces the files by the first title VOB of the
// largest title set in that file's folder, to be opened as a whole domain.
void ChooseTitleSet(StartUpRequest& request, FileSystem& files);

enum class StartUpAction {
  kNothing,     // no file was named
  kRefuse,      // show kUnsupportedFileText
  kFullDomain,  // open the domain of the first file
  kVobs,        // open all files as one set
  kSup,         // load the first file
};

// What the first file's extension asks for.
[[nodiscard]] StartUpAction ActionFor(const StartUpRequest& request);

}  // namespace quillomar
