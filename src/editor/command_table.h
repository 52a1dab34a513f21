#pragma once

#include <span>
#include <string_view>

namespace quillomar {

class Editor;

enum class Menu { kFile, kEdit, kOcr, kHelp, kNone };

enum class CommandId {
  kOpenVobs,
  kOpenFullDomain,
  kOpenSup,
  kOpenIfo,
  kOpenMostRecent,
  kSaveAll,
  kSaveSup,
  kSaveSrt,
  kSaveInfoText,
  kSaveBitmap,
  kSaveFrame,
  kReplaceBitmap,
  kEditBitmap,
  kPreferences,
  kExit,
  kApplyLast,
  kApplyLastToAll,
  kReloadUnit,
  kReloadAll,
  kOcrCurrent,
  kOcrSelected,
  kHideHearingImpaired,
  kHideHearingImpairedAll,
  kViewLog,
  kManual,
  kWeb,
  kGuideHearingImpaired,
  kGuideColours,
  kAbout,
  kAbort,
  kPrevious,
  kNext,
  kFirst,
  kLast,
  kCrop,
  kHide,
  kSavePpm,
  kRetimeCurrent,
  kRetimeAll,
  kRedraw,
};

// When a command may run. A command whose guard does not hold does nothing, without a word.
enum class Guard {
  kAlways,
  kIdle,          // no job runs
  kIdleWithSet,   // and a file set is open
  kIdleWithUnit,  // and there is a current subpicture
};

using CommandHandler = void (Editor::*)();

struct Command {
  CommandId id;
  std::string_view name;  // stable, for object names
  Menu menu;
  std::string_view text;  // as the menu shows it, with its key behind a tabulator
  std::string_view key;   // portable key sequence such as "Ctrl+S"; empty without one
  Guard guard;
  CommandHandler handler;  // null: not available yet, shown greyed
  bool separatorBefore = false;
};

// All commands in the order of the menus.
[[nodiscard]] std::span<const Command> Commands();
[[nodiscard]] const Command& FindCommandById(CommandId id);

}  // namespace quillomar
