#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "base/format.h"
#include "base/paths.h"
#include "base/platform.h"

namespace quillomar {
namespace {

constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kNewFolderMode = 0777;
constexpr mode_t kPrivateFolderMode = 0700;

// The device begins with writes of this size at once, so that a Sync at the end waits for little.
constexpr std::size_t kLongWrite = 65'536;

class DiskFile final : public File {
 public:
  DiskFile(std::string path, int descriptor) : File(std::move(path)), descriptor_(descriptor) {}
  ~DiskFile() override { ::close(descriptor_); }
  DiskFile(const DiskFile&) = delete;
  DiskFile& operator=(const DiskFile&) = delete;

  std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> out) override {
    std::size_t done = 0;
    while (done < out.size()) {
      const ssize_t count = ::pread(descriptor_, out.data() + done, out.size() - done,
                                    static_cast<off_t>(offset + done));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return std::nullopt;
      if (count == 0) break;
      done += static_cast<std::size_t>(count);
    }
    return done;
  }

  Result WriteAt(std::uint64_t offset, ByteSpan bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t count = ::pwrite(descriptor_, bytes.data() + done, bytes.size() - done,
                                     static_cast<off_t>(offset + done));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return Result::kFailed;
      done += static_cast<std::size_t>(count);
    }
    if (done >= kLongWrite) {
      (void)::sync_file_range(descriptor_, static_cast<off_t>(offset), static_cast<off_t>(done),
                              SYNC_FILE_RANGE_WRITE);
    }
    return Result::kDone;
  }

  Result SetSize(std::uint64_t size) override {
    return ::ftruncate(descriptor_, static_cast<off_t>(size)) == 0 ? Result::kDone
                                                                   : Result::kFailed;
  }

  Result Sync() override { return ::fsync(descriptor_) == 0 ? Result::kDone : Result::kFailed; }

  std::uint64_t Size() override {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0) return 0;
    return static_cast<std::uint64_t>(status.st_size);
  }

 private:
  int descriptor_;
};

int OpenFlags(OpenMode mode) {
  switch (mode) {
    case OpenMode::kReadOnly:
      return O_RDONLY;
    case OpenMode::kReadWrite:
    case OpenMode::kExclusiveWrite:
      return O_RDWR;
    case OpenMode::kCreate:
      return O_RDWR | O_CREAT | O_TRUNC;
    case OpenMode::kCreateLocked:
    case OpenMode::kCreateKeeping:
      return O_RDWR | O_CREAT;
  }
  return O_RDONLY;
}

bool IsRegularFile(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

Result SyncNames(const std::string& folder) {
  const int descriptor =
      ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return Result::kFailed;
  const int outcome = ::fsync(descriptor);
  // Some file systems cannot sync a folder and keep its names in order by themselves.
  const bool done = outcome == 0 || errno == EINVAL || errno == ENOTSUP;
  ::close(descriptor);
  return done ? Result::kDone : Result::kFailed;
}

class DiskFileSystem final : public FileSystem {
 public:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
    // O_NONBLOCK keeps a named pipe from hanging the program; it means nothing to regular files.
    const int descriptor =
        ::open(path.c_str(), OpenFlags(mode) | O_CLOEXEC | O_NONBLOCK, kNewFileMode);
    if (descriptor < 0) return nullptr;
    auto file = std::make_unique<DiskFile>(path, descriptor);
    if (!IsRegularFile(descriptor)) return nullptr;
    const bool locked = mode == OpenMode::kExclusiveWrite || mode == OpenMode::kCreateLocked;
    if (locked && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0) return nullptr;
    if (mode == OpenMode::kCreateLocked && Failed(file->SetSize(0))) return nullptr;
    return file;
  }

  bool Exists(const std::string& path) override {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
  }

  bool IsFolder(const std::string& path) override {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  }

  std::optional<FileStamp> Stamp(const std::string& path) override {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    return FileStamp{static_cast<std::uint64_t>(status.st_ino),
                     static_cast<std::uint64_t>(status.st_size),
                     status.st_mtim.tv_sec * kNanosecondsPerSecond + status.st_mtim.tv_nsec};
  }

  std::string Canonical(const std::string& path) override {
    std::error_code error;
    const auto canonical = std::filesystem::weakly_canonical(AbsolutePath(path), error);
    return error ? path : canonical.string();
  }

  // Opening asks the device too: one that has shut itself against writing still passes access().
  bool MayWrite(const std::string& path) override {
    return Open(path, OpenMode::kReadWrite) != nullptr;
  }

  std::optional<std::uint64_t> FreeSpace(const std::string& folder) override {
    struct statvfs status {};
    // A folder that is still to be made gets its room from the one that it will stand in.
    for (std::filesystem::path path = folder;; path = path.parent_path()) {
      if (::statvfs(path.c_str(), &status) == 0) break;
      if (errno != ENOENT || !path.has_relative_path()) return std::nullopt;
    }
    return std::uint64_t{status.f_bavail} * status.f_frsize;
  }

  std::vector<std::string> List(const std::string& folder) override {
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entries(folder, error);
    const std::filesystem::directory_iterator end;
    while (!error && entries != end) {
      names.push_back(entries->path().filename().string());
      entries.increment(error);
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  Result CreateFolder(const std::string& path) override {
    if (::mkdir(path.c_str(), kNewFolderMode) == 0 || IsFolder(path)) return Result::kDone;
    return Result::kFailed;
  }

  Result Remove(const std::string& path) override {
    return ::unlink(path.c_str()) == 0 ? Result::kDone : Result::kFailed;
  }

  Result Rename(const std::string& from, const std::string& to) override {
    return ::rename(from.c_str(), to.c_str()) == 0 ? Result::kDone : Result::kFailed;
  }

  Result SyncFolder(const std::string& folder) override { return SyncNames(folder); }
};

// A folder that another user could have prepared is refused: files are written to it under names
// that can be guessed.
bool IsPrivateFolder(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::getuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

std::string MakePrivateTemporaryFolder() {
  const std::string parent = EnvironmentVariable("TMPDIR").value_or("/tmp");
  std::string folder = JoinPath(parent, Format("quillomar-%u", static_cast<unsigned>(::getuid())));
  ::mkdir(folder.c_str(), kPrivateFolderMode);
  if (IsPrivateFolder(folder)) return folder;
  std::string unique = folder + "-XXXXXX";
  return ::mkdtemp(unique.data()) != nullptr ? unique : std::string();
}

// Folder "quillomar" of one of the user's base folders: the variable's, else the one below the
// home.
std::string BaseFolder(const std::string& variable, const std::string& belowHome) {
  std::string base = EnvironmentVariable(variable).value_or("");
  if (base.empty() || base.front() != '/') {
    base = JoinPath(EnvironmentVariable("HOME").value_or("/"), belowHome);
  }
  return JoinPath(base, "quillomar");
}

std::string ConfigurationFolder() {
  return BaseFolder("XDG_CONFIG_HOME", ".config");
}

}  // namespace

std::unique_ptr<FileSystem> MakeDiskFileSystem() {
  return std::make_unique<DiskFileSystem>();
}

std::optional<std::string> EnvironmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (value == nullptr || *value == '\0') return std::nullopt;
  return std::string(value);
}

void PrepareEnvironment() {
  if (!EnvironmentVariable("APPDATA")) {
    const std::string folder = ConfigurationFolder();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    ::setenv("APPDATA", folder.c_str(), 1);
  }
  if (!EnvironmentVariable("TEMP")) {
    const std::string folder = MakePrivateTemporaryFolder();
    if (!folder.empty()) ::setenv("TEMP", folder.c_str(), 1);
  }
}

std::string StateFolder() {
  const std::string appData = EnvironmentVariable("APPDATA").value_or("");
  const bool ownPlace = !appData.empty() && appData != ConfigurationFolder();
  std::string folder =
      ownPlace ? JoinPath(appData, "state") : BaseFolder("XDG_STATE_HOME", ".local/state");
  std::error_code error;
  if (!std::filesystem::create_directories(folder, error)) return folder;
  // A journal in a folder that is gone after a crash would be of no use.
  for (auto made = std::filesystem::path(folder); made.has_relative_path();) {
    made = made.parent_path();
    (void)SyncNames(made.string());
  }
  return folder;
}

std::string AbsolutePath(const std::string& path) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(path, error).lexically_normal();
  return error ? path : absolute.string();
}

std::string ExecutablePath() {
  std::error_code error;
  const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : path.string();
}

bool IsTerminal(StandardStream stream) {
  switch (stream) {
    case StandardStream::kIn:
      return ::isatty(STDIN_FILENO) == 1;
    case StandardStream::kOut:
      return ::isatty(STDOUT_FILENO) == 1;
    case StandardStream::kError:
      return ::isatty(STDERR_FILENO) == 1;
  }
  return false;
}

std::string TimeOfDay() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return Format("%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
}

std::int64_t MonotonicMs() {
  using std::chrono::duration_cast;
  return duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace quillomar
