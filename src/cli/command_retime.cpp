#include <algorithm>

#include "base/format.h"
#include "cli/cli_call.h"

namespace quillomar {

int RunRetime(const CliCall& call) {
  if (!call.options.delta) {
    (void)call.Refuse("retime needs --delta SECONDS");
    return kCliUsage;
  }
  if (!call.editor.MayRetime()) return kCliRefused;
  const UnitList units = call.SelectedUnits();
  std::vector<std::uint32_t> before;
  for (const UnitPointer& unit : units) before.push_back(unit->state.pts);
  call.editor.Retime(units, *call.options.delta);
  int left = 0;
  for (std::size_t i = 0; i < units.size(); ++i) left += units[i]->state.pts == before[i] ? 1 : 0;
  if (left == 0) return kCliDone;
  return call.Refuse(
      Format("%d of %d subpics keep their time", left, static_cast<int>(units.size())));
}

}  // namespace quillomar
