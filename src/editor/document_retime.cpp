#include "editor/document.h"
#include "retime/retimer.h"

namespace quillomar {

Result Document::Retime(const UnitList& selection, double seconds, JobControl& control) {
  if (Failed(CheckUnchanged())) return Result::kFailed;
  const std::unique_ptr<WriteTransaction> transaction = session_.transactions->Begin();
  OwnedUnits units = Owned();
  const OwnedUnits moved = OwnedOf(selection);
  history_.Clear();
  const RetimedDisc disc{set_, ifo_, cells_, results_, units};
  Retimer retimer(disc, *transaction, session_.reporter, control);
  const Result result = moved.size() == 1 ? retimer.RetimeOne(*moved.front(), seconds)
                                          : retimer.RetimeSelected(moved, seconds);
  {
    const std::lock_guard lock(mutex_);
    units_ = std::move(units);
  }
  const bool done = !Failed(result);
  if (done && !Failed(transaction->Commit())) {
    NoteStamps();
    return Result::kDone;
  }
  // The disc is as it was, but what is known of it is what it would have become.
  ForbidSaving();
  if (!done) return Result::kFailed;
  session_.reporter.ReportError(
      "The retiming could not be written safely to the disk.\n"
      "Restore the files or open them again before you go on.");
  return Result::kFailed;
}

}  // namespace quillomar
