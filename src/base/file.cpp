#include "base/file.h"

#include "base/paths.h"

namespace quillomar {

std::string FindIgnoringCase(FileSystem& files, const std::string& path) {
  if (files.Exists(path)) return path;
  const PathParts parts = SplitPath(path);
  const std::string wanted = parts.title + parts.extension;
  for (const std::string& name : files.List(parts.folder.empty() ? "." : parts.folder)) {
    if (EqualIgnoringCase(name, wanted)) return parts.folder + name;
  }
  return path;
}

std::optional<Bytes> ReadWholeFile(FileSystem& files, const std::string& path,
                                   std::uint64_t limit) {
  const std::unique_ptr<File> file = files.Open(path, OpenMode::kReadOnly);
  if (!file || file->Size() > limit) return std::nullopt;
  Bytes bytes(static_cast<std::size_t>(file->Size()));
  const auto count = file->ReadAt(0, bytes);
  if (!count) return std::nullopt;
  bytes.resize(*count);
  return bytes;
}

}  // namespace quillomar
