// The last modifications again, on the current unit or on all, and taking everything back.

#include "editor/editor.h"

namespace quillomar {

void Editor::ApplyLast() {
  if (!UnitMayBeEdited()) return;
  (void)ApplyModifications(OpenCurrent("last modifications"), last_, ChoicesOf(last_),
                           session_.preferences, document_.Context());
  UpdateView();
}

void Editor::ApplyLastToAll() {
  const auto choices = frontEnd_.ChooseModifications(ChoicesOf(last_));
  if (choices) ApplyToAll(*choices);
}

void Editor::ApplyToAll(const ApplyAllChoices& choices) {
  auto work = [this, choices, units = selection_.List(), last = last_,
               preferences = session_.preferences] {
    const SpuContext context = document_.Context();
    document_.History().Begin("last modifications", last);
    for (std::size_t i = 0; i < units.size() && !session_.job.abortRequested; ++i) {
      SubpictureUnit& unit = document_.History().Open(units[i]);
      const bool done = !Failed(ApplyModifications(unit, last, choices, preferences, context));
      unit.ReleasePixels();
      if (done) session_.job.percent = static_cast<int>(i * 100 / (units.size() + 1));
    }
  };
  StartJob(choices.CropAlone() ? Operation::kCropping : Operation::kApplying, "", std::move(work),
           {});
}

void Editor::ReloadAll() {
  if (!document_.Modified()) return;
  if (!session_.reporter.AskOkCancel("This will undo all your changes... Proceed?")) return;
  auto work = [this, units = selection_.List()] {
    for (std::size_t i = 0; i < units.size(); ++i) {
      session_.job.percent = static_cast<int>(i * 100 / units.size());
      (void)document_.ReloadUnit(document_.History().Open(units[i]));
    }
  };
  document_.History().Begin("reload", last_);
  last_ = {};
  document_.RevertCluts();
  StartJob(Operation::kReverting, "Reverting changes", std::move(work), {});
}

}  // namespace quillomar
