#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bitmap/type_colours.h"
#include "editor/command_table.h"
#include "editor/document.h"
#include "editor/front_end.h"
#include "editor/last_modifications.h"
#include "editor/ocr_desk.h"
#include "editor/recent_files.h"
#include "editor/selection.h"
#include "editor/session.h"
#include "editor/unit_edits.h"
#include "editor/video_desk.h"
#include "editor/view.h"
#include "editor/view_options.h"

namespace quillomar {

// The whole program without a window: what every command does, checks, asks and says. Lives on one
// thread; only jobs run elsewhere.
class Editor {
 public:
  Editor(Session& session, FrontEnd& frontEnd, JobRunner& runner);

  // Runs a command if its guard holds.
  void Run(CommandId id);
  [[nodiscard]] bool Enabled(const Command& command) const;
  // What the menu shows: the command's text, with what it would take back or do again.
  [[nodiscard]] std::string MenuText(const Command& command) const;

  // Opens files as the command line or a drop names them. `fullDomain`: the whole domain of the
  // first.
  void OpenFiles(const std::vector<std::string>& paths, bool fullDomain);
  // Colours of a .sup file from an IFO.
  void AttachIfo(const std::string& path);
  // Files dropped on the window, with the refusals of drops.
  void DropFiles(const std::vector<std::string>& paths);

  // Takes up the recent files of the session's data folder.
  void ReadRecentFiles();
  [[nodiscard]] const RecentFiles& Recent() const { return recent_; }
  // Opens a recent file set from its analysis, without a scan.
  void OpenRecent(std::size_t entry);

  // The question whether unsaved work may be lost; true when it may, or when there is none.
  [[nodiscard]] bool MayClose();
  // Releases the open files.
  void CloseFiles();

  // Selectors; indices are those of the View's entries (0: all).
  void ChooseStream(int entry);
  void ChooseVcid(int entry);
  void ChooseSequence(int entry);
  void StepStream(int direction);
  void StepVcid(int direction);
  void GoTo(int index);
  void SetModifiedOnly(bool on);
  void SetForcedOnly(bool on);
  // Shows one pixel type alone; again: all.
  void ToggleOnlyType(int pixelType);
  // Lists only units whose recognised text holds one of these characters; nothing: no such filter.
  // An empty text filters nothing.
  void FilterByCharacters(std::optional<std::string> characters);
  // What FindNext and FindPrevious look for.
  void SetSearchText(const std::string& text);
  // Lists only units whose recognised text holds the search text, if there is one.
  void FilterBySearchText(bool on);
  // The screen on which the picture is shown.
  void ChooseScreenMode(ScreenMode mode);
  // Shows all pixel types but the background opaque.
  void IgnoreTransparency(bool on);

  // Edits of the current unit. While the user holds a key or a button, those of one kind are one
  // step of the history.
  void BeginHold() {
    if (!busy_) document_.History().BeginHold();
  }
  void EndHold() {
    if (!busy_) document_.History().EndHold();
  }
  void SetColour(int pixelType, int clutEntry);
  // `which` as SetAlpha takes it.
  void SetTransparency(int alpha, int which);
  // Moves are absolute: lines above and pixels right of the area as found.
  void MoveVertically(int linesUp);
  void MoveHorizontally(int pixelsRight);
  void SetBorder(int lines);
  // 0: none, 1 to 5: the presets of the preferences, for the set's video standard.
  void ChooseBorderPreset(int preset);
  // Whether borders also pull subpictures towards them; one that is there does so at once.
  void FlushToBorder(bool on);
  // Asks whether to add a STOP command where there is none.
  void SetDuration(int ms);
  void MakeInfinite();
  void SetForced(bool forced);
  void AddFade();
  void RemoveFade();
  // Colours of the pixel types: the IFO's, or the automatic ones.
  void UseAutomaticClut(bool automatic);
  // Applies what was chosen of the last modifications to every unit of the filtered list.
  void ApplyToAll(const ApplyAllChoices& choices);
  [[nodiscard]] const LastModifications& Last() const { return last_; }
  // Asks for a colour for the entry that a pixel type shows and changes the CLUT.
  void EditClutEntry(int pixelType);

  // Whether units of the open files can be moved in time now; says why not.
  [[nodiscard]] bool MayRetime();
  // Moves units, given in the order of the list, after the warning that is shown once per run.
  void Retime(UnitList units, double seconds);

  // Whether text can be read; says why not.
  [[nodiscard]] bool MayReadText() { return ocr_.Ready(); }
  // Reads units, given in the order of the list.
  void OcrUnits(const UnitList& units);
  // Takes text for the hearing-impaired out of units, given in the order of the list.
  void HideHearingImpairedIn(const UnitList& units);
  // Units of which the job that ended last could not change what it should.
  [[nodiscard]] int RefusedByLastJob() const { return refused_; }
  // Characters of the current unit's text that erasing and correcting are about.
  void SelectText(std::optional<BoxRange> range) { selectedText_ = range; }
  // What they should have been read as; asks whether the same glyph elsewhere follows.
  void CorrectText(const std::string& text);
  // Shows the text as it was before anything was erased.
  void ShowSavedText(bool on);

  // Command handlers.
  void OcrCurrent();
  void OcrSelected();
  void HideHearingImpaired();
  void HideHearingImpairedAll();
  void EraseText();
  void NextDoubtful();
  void OpenVobs();
  void OpenFullDomain();
  void OpenMostRecent();
  void SaveSrt();
  void SaveInfoText();
  void SaveAll();
  void OpenSup();
  void OpenIfo();
  void SaveSup();
  void SaveBitmap();
  void SavePpm();
  void SaveVideoFrame();
  void PlayOrStop();
  void LoopOrStop();
  void NextAudio();
  void PreviousAudio();
  void ReplaceBitmap();
  void EditBitmap();
  void CropCurrent();
  void HideCurrent();
  void ShowPreferences();
  void ReloadCurrent();
  void ReloadAll();
  void Undo();
  void Redo();
  void RestoreLastSaved();
  void ApplyLast();
  void ApplyLastToAll();
  void RetimeCurrent();
  void RetimeAll();
  void Abort();
  void Exit();
  void ViewLog();
  void ShowManual();
  void ShowWeb();
  void ShowGuideHearingImpaired();
  void ShowGuideColours();
  void ShowAbout();
  void GoPrevious();
  void GoNext();
  void GoFirst();
  void GoLast();
  void Redraw();
  void FindPrevious();
  void FindNext();
  void FocusCharacters();
  void SwitchClut();
  // Menu buttons are counted from 0.
  template <int kButton>
  void ChooseButton() {
    ShowButton(kButton);
  }
  void PreviousButton();
  void NextButton();
  void SwitchHighlight();

  // While a job runs: percent line into the log, growing list. Called about every 200 ms.
  void Tick();
  // Label of the running job for the progress display; empty without one.
  [[nodiscard]] std::string JobLabel() const;
  // How long it will take still, and how fast a job goes that counts; empty while that is not
  // known.
  [[nodiscard]] std::string JobTimeLeft() const;
  [[nodiscard]] bool JobCanStop() const;

  [[nodiscard]] bool Busy() const { return busy_; }
  [[nodiscard]] const View& CurrentView() const { return view_; }
  [[nodiscard]] Document& Doc() { return document_; }
  [[nodiscard]] Selection& List() { return selection_; }
  [[nodiscard]] VideoDesk& Video() { return video_; }
  [[nodiscard]] Session& Context() { return session_; }

 private:
  using Work = std::function<void()>;

  void EditCurrent(const UnitEdits& edits);
  [[nodiscard]] ScreenMode CurrentScreenMode() const;
  void FollowStreamsModes();
  [[nodiscard]] TextSearch MakeSearch() const;
  void Find(int direction);
  void ShowButton(int button);
  void ChooseText(BoxRange range);
  // The current unit for a step of its own in the history.
  SubpictureUnit& OpenCurrent(const char* name);
  void ShowStep(const EditStep* step);
  void OpenSupFile(const std::string& path);
  // Opens files, after an interrupted change of them has been settled; where it was not, they are
  // open for reading only and it returns false.
  bool OpenSettled(const std::function<void()>& open);
  void ChooseIfo();
  [[nodiscard]] std::string ProposedBitmapName() const;
  [[nodiscard]] ExchangeColours ExchangeColoursOfCurrent();
  void EditWithTool(const std::string& path, const TypeColours& colours);
  void SaveBitmapAs(const std::string& path, int type);
  void ImportBitmap(const std::string& path, const TypeColours& colours);
  bool CloseCheck();
  void StartScan(bool mayBeFast);
  std::optional<std::size_t> ChooseFastOpen();
  std::optional<std::string> ChooseTarget(const std::string& title, const std::string& filter,
                                          const std::string& folder);
  void LoadRecent(std::size_t entry);
  void SaveAnalysis();
  void NoteRecentFiles();
  void StartJob(Operation operation, const std::string& title, Work work, Work afterwards);
  void RefillList();
  void UpdateView();
  // The sequence that edits of the look go to; nothing: all.
  [[nodiscard]] std::optional<int> EditedSequence() const;
  void AddFiles(const std::vector<std::string>& paths);
  void AddFullDomain(const std::string& path);
  void ReportUnopened(const std::string& path);
  void WarnIfOnly4x3();
  [[nodiscard]] bool UnitMayBeEdited();
  [[nodiscard]] std::optional<double> ChooseStartChange(const std::string& title);

  Session& session_;
  FrontEnd& frontEnd_;
  JobRunner& runner_;
  Document document_;
  RecentFiles recent_;
  Selection selection_;
  LastModifications last_;
  OcrDesk ocr_;
  std::optional<BoxRange> selectedText_;
  int refused_ = 0;
  View view_;
  ViewOptions look_;
  std::optional<ScreenMode> screenMode_;  // as last chosen or followed
  std::string searchText_;
  UnitPointer shown_;  // the unit in the view
  VideoDesk video_;
  bool busy_ = false;
  bool jobChangesUnits_ = false;  // the view must not look at units until the job has ended
  int ticks_ = 0;
  std::chrono::steady_clock::time_point jobStart_;
};

}  // namespace quillomar
