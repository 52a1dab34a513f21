// Retiming: what is checked and asked before packs move.

#include "editor/editor.h"

namespace quillomar {

bool Editor::MayRetime() {
  if (busy_) return false;
  const VobFileSet& set = document_.Files();
  if (set.FullTitleDomain() && !set.OpenedFromCache()) return selection_.Current() != nullptr;
  std::string text =
      "Retiming subtitles is only possible in the title domain\n"
      "and if the entire domain is loaded.\n"
      "Not available for .sup files";
  if (set.OpenedFromCache()) text += ", or if you used the MRU list to open the files.";
  session_.reporter.ReportError(text);
  return false;
}

std::optional<double> Editor::ChooseStartChange(const std::string& title) {
  if (!MayRetime()) return std::nullopt;
  video_.EndPlayback();
  return frontEnd_.ChooseStartChange(
      {title, session_.preferences.retimingSliderRange, document_.Standard()});
}

void Editor::RetimeCurrent() {
  const auto seconds = ChooseStartChange("Change timing for the current subpic");
  if (seconds) Retime({selection_.Current()}, *seconds);
}

void Editor::RetimeAll() {
  const auto seconds = ChooseStartChange("Change timing for all selected subpics");
  if (seconds) Retime(selection_.List(), *seconds);
}

void Editor::Retime(UnitList units, double seconds) {
  if (units.empty() || !MayRetime()) return;
  const bool warned = session_.warnedOfRetiming;
  session_.warnedOfRetiming = true;
  if (!warned && !session_.reporter.AskOkCancel(
                     "There is NO undo for this\nThe VOB file will be modified. Proceed?")) {
    return;
  }
  StartJob(
      Operation::kRetiming, "ReTiming subpics",
      [this, units = std::move(units), seconds] {
        (void)document_.Retime(units, seconds, session_.job);
      },
      [this] { SaveAnalysis(); });
}

}  // namespace quillomar
