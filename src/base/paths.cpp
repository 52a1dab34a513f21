#include "base/paths.h"

#include <algorithm>

namespace quillomar {
namespace {

char LowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsSeparator(char c) {
  return c == '/' || c == '\\';
}

}  // namespace

PathParts SplitPath(std::string_view path) {
  const auto separator = path.find_last_of("/\\");
  const std::size_t nameStart = separator == std::string_view::npos ? 0 : separator + 1;
  const std::string_view name = path.substr(nameStart);
  const std::size_t dot = std::min(name.find_last_of('.'), name.size());
  return {std::string(path.substr(0, nameStart)), std::string(name.substr(0, dot)),
          std::string(name.substr(dot))};
}

char PathSeparator() {
#ifdef _WIN32
  return '\\';
#else
  return '/';
#endif
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && !IsSeparator(path.back())) path += PathSeparator();
  return path.append(name);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerLetter(x) == LowerLetter(y); });
}

std::string ToLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), LowerLetter);
  return lower;
}

}  // namespace quillomar
