#include "app/command_line.h"

#include "base/paths.h"
#include "dvd/vob_file_set.h"
#include "dvd/vob_name.h"

namespace quillomar {
namespace {

bool HasExtension(const std::string& path, std::string_view extension) {
  return EqualIgnoringCase(SplitPath(path).extension, extension);
}

}  // namespace

StartUpRequest ParseCommandLine(std::span<const std::string> arguments) {
  StartUpRequest request;
  for (const std::string& argument : arguments) {
    if (argument == "-A") {
      request.automatic = true;
      request.openFullDomain = true;
    } else if (argument == "-F") {
      request.openFullDomain = true;
    } else if (!argument.starts_with('-') && request.files.size() < kMaxCommandLineFiles) {
      request.files.push_back(argument);
    }
  }
  return request;
}

void ChooseTitleSet(StartUpRequest& request, FileSystem& files) {
  if (request.files.empty()) return;
  const std::string first = request.files.front();
  if (!request.automatic && !HasExtension(first, ".ifo")) return;
  request.openFullDomain = true;
  const std::string folder = SplitPath(first).folder;
  // A bare file name lies in the current folder.
  const int titleSet = LargestTitleSet(files, folder.empty() ? "." : folder);
  request.files = {FindIgnoringCase(files, JoinPath(folder, VobName(titleSet, 1)))};
}

StartUpAction ActionFor(const StartUpRequest& request) {
  if (request.files.empty()) return StartUpAction::kNothing;
  const std::string& first = request.files.front();
  if (HasExtension(first, ".sup")) return StartUpAction::kSup;
  if (!HasExtension(first, ".vob")) return StartUpAction::kRefuse;
  return request.openFullDomain ? StartUpAction::kFullDomain : StartUpAction::kVobs;
}

}  // namespace quillomar
