#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/reporting.h"
#include "ocr/pattern_store.h"

// What the user taught, kept in a folder for all discs:
//
//   db.lst      one line for each pattern, fields parted by one blank:
//                 number  depth  x-height  text (UTF-8, to the end of the line)
//   db_N.pbm    the ink of pattern N: a binary portable bitmap ("P4"), 1 is ink
namespace quillomar {

// Content of a db_N.pbm; nothing when it is not one, or larger than a subpicture. Only the bitmap's
// fields are set.
[[nodiscard]] std::optional<GlyphPattern> ParsePatternImage(ByteSpan bytes);
[[nodiscard]] Bytes WritePatternImage(const GlyphPattern& pattern);

// A line of db.lst.
struct PatternEntry {
  unsigned long number = 0;
  int depth = 0, xHeight = 1;
  std::u32string text;
};
[[nodiscard]] std::optional<PatternEntry> ParsePatternEntry(const std::string& line);

class PatternDatabase {
 public:
  PatternDatabase(FileSystem& files, Reporter& reporter, std::string folder)
      : files_(files), reporter_(reporter), folder_(std::move(folder)) {}

  // Reads what the folder holds. What is damaged is left out with a log line.
  void Load();
  // What a pattern stands for; empty when nothing was taught of it.
  [[nodiscard]] std::u32string TextOf(const GlyphPattern& pattern) const;
  // Holds the text for this pattern and keeps it; replaces an earlier lesson on a pattern like it.
  // Fails, with a message, when it cannot be written; it is held all the same.
  Result Teach(const GlyphPattern& pattern, const std::u32string& text);
  [[nodiscard]] std::size_t Size() const { return patterns_.Size(); }

 private:
  [[nodiscard]] std::string PathOf(const std::string& name) const;
  void LoadEntry(const std::string& line);
  Result Keep(std::size_t id);
  Result WriteFile(const std::string& name, ByteSpan bytes);

  struct Taught {
    unsigned long number = 0;
    std::u32string text;
  };
  FileSystem& files_;
  Reporter& reporter_;
  std::string folder_;
  PatternStore patterns_;
  std::vector<Taught> taught_;  // by the number of the pattern in the store
};

}  // namespace quillomar
