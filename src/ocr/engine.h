#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/reporting.h"
#include "base/result.h"

// What the program asks of a character recogniser. Nothing above this header knows which one it is.
// An engine is used by one thread at a time; threads of its own end before a call returns, and no
// result depends on their timing.
namespace quillomar {

// The grey of edges that are half ink. They count as paper, but show a reader what the ink means.
inline constexpr std::uint8_t kSoftEdge = 128;

// The text of one subpicture.
struct EnginePicture {
  // Rows of `width` bytes: 0 is ink, kSoftEdge the soft edge of ink, 255 is paper. A white margin
  // stands at the right, so that the last glyph has room behind it; boxes never reach into it.
  std::vector<std::uint8_t> grey;
  int width = 0;
  int height = 0;
  std::string language;  // two letters, as the disc names the stream's; empty: unknown
};

struct EngineSettings {
  bool italics = true;  // straighten slanted lines before reading
  int spaceWidth = 0;   // columns of a gap from which on it parts words; 0: the engine's choice
};

// A character read. Rows are the picture's, columns those of the straightened line (SlantShift
// converts), all edges included.
struct EngineBox {
  int x0 = 0, x1 = 0;
  int y0 = 0, y1 = 0;
  // Code point; 0: ink that could not be read. ' ' spans the whole gap between its neighbours,
  // '\n' ends every line, the last too. A music note is '#'.
  char32_t ch = 0;
  bool doubtful = false;  // read, but worth a look
  friend bool operator==(const EngineBox&, const EngineBox&) = default;
};

struct EngineLine {
  // UTF-8, '_' for what could not be read. A music note is '#' or, as a recogniser may spell it,
  // ".'", where its box is '#'.
  std::string text;
  int refRow = 0;   // row of the picture that straightening leaves in place
  float slant = 0;  // columns per row; above 0 leans right
};

struct EngineResult {
  std::vector<EngineLine> lines;  // from the top
  std::vector<EngineBox> boxes;   // in reading order, line after line
};

// Pictures made when they are wanted, so that a whole disc need not lie in memory. Get may be
// called by several threads at once and more than once for the same picture.
class PictureSource {
 public:
  virtual ~PictureSource() = default;
  [[nodiscard]] virtual std::size_t Count() const = 0;
  [[nodiscard]] virtual EnginePicture Get(std::size_t index) const = 0;
};

// Called after each picture of each pass, and between its lines, with the steps done and all steps;
// never by two threads at once. False: stop; pictures under way count as not read.
using EngineProgress = std::function<bool(std::size_t done, std::size_t steps)>;

// What the user says about a place in a picture.
struct Lesson {
  EnginePicture picture;
  std::vector<EngineBox> boxes;  // as they were read: one or more neighbours of one line
  int refRow = 0;                // of that line
  float slant = 0;
  std::string text;  // what the ink of the boxes stands for, UTF-8, without blanks
};

class OcrEngine {
 public:
  virtual ~OcrEngine() = default;

  // Reads one picture, with what was learnt of the disc so far.
  [[nodiscard]] virtual EngineResult Recognise(const EnginePicture& picture,
                                               const EngineSettings& settings) = 0;
  // Reads all pictures in order, in two passes, with all processors. Returns one result for each
  // picture; none for those that were not read when the progress said stop.
  [[nodiscard]] virtual std::vector<std::optional<EngineResult>> RecogniseAll(
      const PictureSource& pictures, const EngineSettings& settings,
      const EngineProgress& progress) = 0;
  // Forgets what was learnt of the disc: another one is open now.
  virtual void ForgetDisc() = 0;

  // How often the glyph of a lesson stands in each picture.
  [[nodiscard]] virtual std::vector<int> CountAppearances(const Lesson& lesson,
                                                          const PictureSource& pictures,
                                                          const EngineSettings& settings) = 0;
  // Keeps the glyph of a lesson in the pattern database; from now on all that looks like it is read
  // as the lesson says, in this disc and all others. A later lesson on the same glyph replaces an
  // earlier one. Fails, with a message, when the database cannot be written; the lesson then holds
  // until the engine goes.
  virtual Result Teach(const Lesson& lesson) = 0;
};

// The engine with its pattern database ("db.lst" and "db_%lu.pbm") in the folder, which is made
// when there is something to keep; with an empty name nothing is kept. Null, with a log line, when
// there is no recogniser: no language model is installed.
[[nodiscard]] std::unique_ptr<OcrEngine> MakeOcrEngine(FileSystem& files, Reporter& reporter,
                                                       const std::string& databaseFolder);

}  // namespace quillomar
