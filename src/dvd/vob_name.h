#pragma once

#include <optional>
#include <string>
#include <string_view>

// File names of a VIDEO_TS folder; letter case never matters.
namespace quillomar {

inline constexpr int kMaxTitleSets = 99;
inline constexpr int kMaxPieces = 9;

// Numbers in a file title such as "VTS_03_2": at least one character up to the first underscore,
// the title set, an underscore, the piece. A number may have blanks and a sign before it, anything
// may follow the last one. A number that does not parse is missing, and so are those after it.
struct VobTitle {
  std::optional<int> titleSet;
  std::optional<int> piece;
};
[[nodiscard]] VobTitle ParseVobTitle(std::string_view title);

// A menu domain: piece 0 of a title set, or the video manager's VOB. Takes a path.
[[nodiscard]] bool IsMenuFile(std::string_view path);

// "VIDEO_TS.VOB" for (0, 0), empty for title set 0 and another piece, else "VTS_%02d_%d.VOB".
[[nodiscard]] std::string VobName(int titleSet, int piece);
// "VIDEO_TS.IFO" for 0, else VTS_nn_0.IFO.
[[nodiscard]] std::string IfoName(int titleSet);
// Index of an IFO's name in the table of 100 names (its title set); nothing when it is none of
// them.
[[nodiscard]] std::optional<int> IfoNameIndex(std::string_view path);

// Path of the IFO that belongs to a VOB: extension and piece digit replaced.
[[nodiscard]] std::string IfoPathOfVob(std::string_view vobPath);
// The IFO's path with the extension ".BUP", its letters spelled as the IFO's extension is.
[[nodiscard]] std::string BackupPathOfIfo(std::string_view ifoPath);

// The piece digit is the fifth character from the path's end, whatever the extension. Its value;
// nothing when that character is no digit.
[[nodiscard]] std::optional<int> PieceDigit(std::string_view vobPath);
// Path of another piece (0 to 9) of the same title set; a path that is too short stays as it is.
[[nodiscard]] std::string PiecePath(std::string_view vobPath, int piece);

}  // namespace quillomar
