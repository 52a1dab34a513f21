#pragma once

#include <string>
#include <string_view>

namespace quillomar {

// A path taken apart; folder + title + extension is the path again.
struct PathParts {
  std::string folder;     // with its closing separator; empty when there is none
  std::string title;      // the name without its extension
  std::string extension;  // from the last dot of the name on, the dot included; may be empty
};

// Slash and backslash both separate folders.
PathParts SplitPath(std::string_view path);

// Folder and name joined by the system's separator, unless the folder ends in one already.
std::string JoinPath(std::string_view folder, std::string_view name);

// The system's own separator between folders.
char PathSeparator();

// ASCII letters compared without regard to case.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

std::string ToLower(std::string_view text);

}  // namespace quillomar
