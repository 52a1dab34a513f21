#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"

namespace quillomar {

// A stretch of bytes that the journal keeps.
struct KeptBytes {
  std::uint64_t place = 0;    // in the changed file
  std::uint64_t journal = 0;  // in the journal
  std::uint32_t size = 0;
};

// One file as the journal knows it.
struct JournaledFile {
  std::string path;
  bool created = false;    // it was not there before the transaction
  std::uint64_t size = 0;  // before the transaction
  std::uint64_t identity = 0;
  std::vector<KeptBytes> kept;
  // Size and time as the committed transaction left it.
  std::optional<FileStamp> left;
};

// How much of a journal is looked at: all, or only the files that it speaks of.
enum class JournalDepth { kWhole, kNames };

// Reads the records of a journal up to the first that is not whole; the kept bytes stay in the
// file. Nothing when its header is not whole, is of another version, or the file cannot be read.
[[nodiscard]] std::optional<std::vector<JournaledFile>> ReadJournal(
    File& journal, JournalDepth depth = JournalDepth::kWhole);

// Whether the journal keeps all that a file of `size` bytes now lacks at its end.
[[nodiscard]] bool KeepsWhatIsCutOff(const JournaledFile& known, std::uint64_t size);

// Identity of a file, with the bytes that the journal keeps in place of what now stands there.
// Nothing when a sampled page is neither kept nor readable.
[[nodiscard]] std::optional<std::uint64_t> IdentityBefore(File& file, const JournaledFile& known,
                                                          File& journal);

// Identity of a file as it stands. Nothing when it cannot be read.
[[nodiscard]] std::optional<std::uint64_t> IdentityNow(File& file);

}  // namespace quillomar
