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
  kUndo,
  kRedo,
  kRestoreLastSaved,
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
  kFindPrevious,
  kFindNext,
  kFocusCharacters,
  kSwitchClut,
  kButton1,
  kButton2,
  kButton3,
  kButton4,
  kButton5,
  kButton6,
  kButton7,
  kButton8,
  kButton9,
  kButton10,
  kPreviousButton,
  kNextButton,
  kSwitchHighlight,
  kPlay,
  kPlayLoop,
  kPreviousAudio,
  kNextAudio,
  kEraseOcrText,
  kNextDoubtful,
};

// When a command may run. A command whose guard does not hold does nothing, without a word.
enum class Guard {
  kAlways,
  kIdle,           // no job runs
  kIdleWithSet,    // and a file set is open
  kIdleWithUnit,   // and there is a current subpicture
  kIdleWithFrame,  // no job runs and there is a picture of the video
  kIdleWithUndo,   // no job runs and an edit can be taken back
  kIdleWithRedo,   // or done again
  kIdleWithVideo,  // no job runs and the files hold video
};

// Where a key is the command's. A box that takes free text keeps all keys that are pressed in it.
enum class KeyScope {
  kWindow,     // everywhere else
  kNotInText,  // nor where text is walked through or written: it moves the cursor there
  kOcrText,    // in the recognised text alone
};

using CommandHandler = void (Editor::*)();

struct Command {
  CommandId id;
  std::string_view name;  // stable, for object names
  Menu menu;
  std::string_view text;  // as the menu shows it, with its key behind a tabulator
  std::string_view key;   // "Ctrl+S"; several are joined by "; "; empty without one
  Guard guard;
  CommandHandler handler;
  bool separatorBefore = false;
  KeyScope scope = KeyScope::kWindow;
};

// All commands in the order of the menus.
[[nodiscard]] std::span<const Command> Commands();
[[nodiscard]] const Command& FindCommandById(CommandId id);

}  // namespace quillomar
