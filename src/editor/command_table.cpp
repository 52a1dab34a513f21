#include "editor/command_table.h"

#include <algorithm>
#include <array>

#include "editor/editor.h"

namespace quillomar {
namespace {

using enum CommandId;
using enum Guard;
using enum KeyScope;

// clang-format off
constexpr auto kCommands = std::to_array<Command>({
    {kOpenVobs, "openVobs", Menu::kFile, "Open VOB file(s)", "", kAlways, &Editor::OpenVobs},
    {kOpenFullDomain, "openFullDomain", Menu::kFile, "Open full domain", "", kAlways, &Editor::OpenFullDomain},
    {kOpenSup, "openSup", Menu::kFile, "Open .SUP file \t(Ctrl-U)", "Ctrl+U", kIdle, &Editor::OpenSup},
    {kOpenIfo, "openIfo", Menu::kFile, "Open IFO", "Ctrl+J", kIdle, &Editor::OpenIfo},
    {kSaveAll, "saveAll", Menu::kFile, "Save all modifications \t(Ctrl-S)", "Ctrl+S", kIdleWithSet, &Editor::SaveAll, true},
    {kSaveSup, "saveSup", Menu::kFile, "Save selected subpics as .SUP file", "", kIdleWithUnit, &Editor::SaveSup},
    {kSaveBitmap, "saveBitmap", Menu::kFile, "Save current subpic as a bitmap", "", kIdleWithUnit, &Editor::SaveBitmap, true},
    {kSaveFrame, "saveFrame", Menu::kFile, "Save current video frame as .BMP", "", kIdleWithFrame, &Editor::SaveVideoFrame},
    {kReplaceBitmap, "replaceBitmap", Menu::kFile, "Replace current subpic with .BMP file", "", kIdleWithUnit, &Editor::ReplaceBitmap},
    {kEditBitmap, "editBitmap", Menu::kFile, "Edit subpic bitmap with external tool\t(Ctrl-Shift-E)", "Ctrl+Shift+E", kIdleWithUnit, &Editor::EditBitmap},
    {kPreferences, "preferences", Menu::kFile, "Preferences", "", kIdle, &Editor::ShowPreferences, true},
    {kExit, "exit", Menu::kFile, "Exit", "", kAlways, &Editor::Exit, true},

    {kUndo, "undo", Menu::kEdit, "Undo \t(Alt-Backspace)", "Alt+Backspace", kIdleWithUndo, &Editor::Undo},
    {kRedo, "redo", Menu::kEdit, "Redo \t(Ctrl-Y)", "Ctrl+Y", kIdleWithRedo, &Editor::Redo},
    {kApplyLast, "applyLast", Menu::kEdit, "Apply last modifications \t(Ctrl-V)", "Ctrl+V", kIdleWithUnit, &Editor::ApplyLast, true},
    {kApplyLastToAll, "applyLastToAll", Menu::kEdit, "Apply last modifications to all \t(Ctrl-A)", "Ctrl+A", kIdleWithUnit, &Editor::ApplyLastToAll},
    {kReloadUnit, "reloadUnit", Menu::kEdit, "Reload this SPU from file \t(Ctrl-Z)", "Ctrl+Z", kIdleWithUnit, &Editor::ReloadCurrent, true},
    {kReloadAll, "reloadAll", Menu::kEdit, "Reload all SPUs from file", "", kIdleWithSet, &Editor::ReloadAll},
    {kRestoreLastSaved, "restoreLastSaved", Menu::kEdit, "Restore last saved state", "", kIdleWithSet, &Editor::RestoreLastSaved},

    {kOcrCurrent, "ocrCurrent", Menu::kOcr, "OCR current subpic \t(Ctrl-T)", "Ctrl+T", kIdleWithUnit, &Editor::OcrCurrent},
    {kOcrSelected, "ocrSelected", Menu::kOcr, "OCR selected subpics \t(Ctrl-Shift-T)", "Ctrl+Shift+T", kIdleWithUnit, &Editor::OcrSelected},
    {kHideHearingImpaired, "hideHearingImpaired", Menu::kOcr, "Hide hearing impaired text in current subpic \t(Ctrl+W)", "Ctrl+W", kIdleWithUnit, &Editor::HideHearingImpaired, true},
    {kHideHearingImpairedAll, "hideHearingImpairedAll", Menu::kOcr, "Hide hearing impaired text in all selected subpics", "Ctrl+Shift+W", kIdleWithUnit, &Editor::HideHearingImpairedAll},

    {kViewLog, "viewLog", Menu::kHelp, "View Log File", "", kAlways, &Editor::ViewLog},
    {kManual, "manual", Menu::kHelp, "User Manual\t(F1)", "F1", kAlways, &Editor::ShowManual, true},
    {kWeb, "web", Menu::kHelp, "On the web", "", kAlways, &Editor::ShowWeb},
    {kGuideHearingImpaired, "guideHearingImpaired", Menu::kHelp, "Guide: Remove hearing impaired text", "", kAlways, &Editor::ShowGuideHearingImpaired},
    {kGuideColours, "guideColours", Menu::kHelp, "Guide: Changing subtitle colors", "", kAlways, &Editor::ShowGuideColours},
    {kAbout, "about", Menu::kHelp, "About Quillomar", "", kAlways, &Editor::ShowAbout, true},

    {kAbort, "abort", Menu::kNone, "Abort", "Esc", kAlways, &Editor::Abort},
    {kSaveSrt, "saveSrt", Menu::kNone, "Save OCR output as .srt file", "", kIdleWithSet, &Editor::SaveSrt},
    {kSaveInfoText, "saveInfoText", Menu::kNone, "Save all subpic info as text file", "", kIdleWithUnit, &Editor::SaveInfoText},
    {kOpenMostRecent, "openMostRecent", Menu::kNone, "Open the most recent file set", "Ctrl+O", kIdle, &Editor::OpenMostRecent},
    {kPrevious, "previous", Menu::kNone, "Previous subpic", "Left", kAlways, &Editor::GoPrevious, false, kNotInText},
    {kNext, "next", Menu::kNone, "Next subpic", "Right", kAlways, &Editor::GoNext, false, kNotInText},
    {kFirst, "first", Menu::kNone, "First subpic", "Home", kAlways, &Editor::GoFirst, false, kNotInText},
    {kLast, "last", Menu::kNone, "Last subpic", "End", kAlways, &Editor::GoLast, false, kNotInText},
    {kCrop, "crop", Menu::kNone, "Crop the background of the current subpic", "Ctrl+E", kIdleWithUnit, &Editor::CropCurrent},
    {kHide, "hide", Menu::kNone, "Hide the current subpic", "Ctrl+H", kIdleWithUnit, &Editor::HideCurrent},
    {kSavePpm, "savePpm", Menu::kNone, "Save the current subpic as PPM file", "Ctrl+Shift+S", kIdleWithUnit, &Editor::SavePpm},
    {kRetimeCurrent, "retimeCurrent", Menu::kNone, "Modify start time of current subpic", "", kIdleWithSet, &Editor::RetimeCurrent},
    {kRetimeAll, "retimeAll", Menu::kNone, "Modify start time of all selected subpics", "", kIdleWithSet, &Editor::RetimeAll},
    {kRedraw, "redraw", Menu::kNone, "Redraw the window", "F5", kAlways, &Editor::Redraw},
    {kFindPrevious, "findPrevious", Menu::kNone, "Find the previous subpic that holds the search string", "Shift+F3", kIdleWithUnit, &Editor::FindPrevious},
    {kFindNext, "findNext", Menu::kNone, "Find the next subpic that holds the search string", "F3", kIdleWithUnit, &Editor::FindNext},
    {kFocusCharacters, "focusCharacters", Menu::kNone, "Type characters to be found in subpics", "Ctrl+G", kIdleWithSet, &Editor::FocusCharacters},
    {kSwitchClut, "switchClut", Menu::kNone, "Show the other of IFO CLUT and automatic CLUT", "Ctrl+D", kIdleWithUnit, &Editor::SwitchClut},
    {kButton1, "button1", Menu::kNone, "Show menu button 1", "Ctrl+1", kIdleWithUnit, &Editor::ChooseButton<0>},
    {kButton2, "button2", Menu::kNone, "Show menu button 2", "Ctrl+2", kIdleWithUnit, &Editor::ChooseButton<1>},
    {kButton3, "button3", Menu::kNone, "Show menu button 3", "Ctrl+3", kIdleWithUnit, &Editor::ChooseButton<2>},
    {kButton4, "button4", Menu::kNone, "Show menu button 4", "Ctrl+4", kIdleWithUnit, &Editor::ChooseButton<3>},
    {kButton5, "button5", Menu::kNone, "Show menu button 5", "Ctrl+5", kIdleWithUnit, &Editor::ChooseButton<4>},
    {kButton6, "button6", Menu::kNone, "Show menu button 6", "Ctrl+6", kIdleWithUnit, &Editor::ChooseButton<5>},
    {kButton7, "button7", Menu::kNone, "Show menu button 7", "Ctrl+7", kIdleWithUnit, &Editor::ChooseButton<6>},
    {kButton8, "button8", Menu::kNone, "Show menu button 8", "Ctrl+8", kIdleWithUnit, &Editor::ChooseButton<7>},
    {kButton9, "button9", Menu::kNone, "Show menu button 9", "Ctrl+9", kIdleWithUnit, &Editor::ChooseButton<8>},
    {kButton10, "button10", Menu::kNone, "Show menu button 10", "Ctrl+0", kIdleWithUnit, &Editor::ChooseButton<9>},
    {kPreviousButton, "previousButton", Menu::kNone, "Show the previous menu button", "Ctrl+P", kIdleWithUnit, &Editor::PreviousButton},
    {kNextButton, "nextButton", Menu::kNone, "Show the next menu button", "Ctrl+N", kIdleWithUnit, &Editor::NextButton},
    {kSwitchHighlight, "switchHighlight", Menu::kNone, "Show menu buttons selected or activated", "Ctrl+Q", kIdleWithUnit, &Editor::SwitchHighlight},
    {kPlay, "play", Menu::kNone, "Start or stop playback", "Space", kIdleWithVideo, &Editor::PlayOrStop, false, kNotInText},
    {kPlayLoop, "playLoop", Menu::kNone, "Start or stop looped playback of the current subpic", "", kIdleWithVideo, &Editor::LoopOrStop},
    {kPreviousAudio, "previousAudio", Menu::kNone, "Select the previous audio stream for playback", "Ctrl+Shift+M", kIdleWithVideo, &Editor::PreviousAudio},
    {kNextAudio, "nextAudio", Menu::kNone, "Select the next audio stream for playback", "Ctrl+M", kIdleWithVideo, &Editor::NextAudio},
    {kEraseOcrText, "eraseOcrText", Menu::kNone, "Erase the selected text from the OCR output and the bitmap", "Del; Backspace; Ctrl+X", kIdleWithUnit, &Editor::EraseText, false, kOcrText},
    {kNextDoubtful, "nextDoubtful", Menu::kNone, "Go to the next doubtful or unknown character", "F4", kIdleWithUnit, &Editor::NextDoubtful},
});
// clang-format on

}  // namespace

std::span<const Command> Commands() {
  return kCommands;
}

const Command& FindCommandById(CommandId id) {
  return *std::find_if(kCommands.begin(), kCommands.end(),
                       [id](const Command& command) { return command.id == id; });
}

}  // namespace quillomar
