#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/file.h"

// The only door to the operating system; everything behind it differs between systems.
namespace quillomar {

// The real file system. kExclusiveWrite is an advisory lock that belongs to the open file, so
// closing another handle of the same file does not release it.
std::unique_ptr<FileSystem> MakeDiskFileSystem();

std::optional<std::string> EnvironmentVariable(const std::string& name);

// Gives the process the variables "APPDATA" and "TEMP" where the system has none: APPDATA becomes
// the folder "quillomar" of the XDG configuration home, TEMP a folder of the user's own (mode 0700)
// in TMPDIR or the system's temporary folder; both are created. Call before any thread starts.
void PrepareEnvironment();

// Where the program keeps what it must find again after a crash, created if missing: the folder
// "quillomar" of the XDG state home or, where APPDATA was given from outside, the folder "state" in
// that.
std::string StateFolder();

// A path from the root of the file system, for one from the current folder; others stay as they
// are.
std::string AbsolutePath(const std::string& path);

// Full path of the running program; empty when the system does not tell.
std::string ExecutablePath();

enum class StandardStream { kIn, kOut, kError };
[[nodiscard]] bool IsTerminal(StandardStream stream);

// Local time of day formatted "%H:%M:%S".
std::string TimeOfDay();

// Milliseconds of a clock that never goes back; only differences mean anything.
std::int64_t MonotonicMs();

}  // namespace quillomar
