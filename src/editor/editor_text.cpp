// Commands that write text files.

#include "base/paths.h"
#include "editor/editor.h"
#include "editor/text_output.h"

namespace quillomar {

std::optional<std::string> Editor::ChooseTarget(const std::string& title, const std::string& filter,
                                                const std::string& folder) {
  FileRequest request{title, filter, folder, ""};
  request.forSaving = true;
  const auto paths = frontEnd_.ChooseFiles(request);
  return paths.empty() ? std::nullopt : std::optional(paths.front());
}

void Editor::SaveSrt() {
  const auto path = ChooseTarget("Save OCR output as .srt file", "(*.srt)|*.srt||",
                                 session_.preferences.lastSrtDir);
  if (!path) return;
  UnitList units = document_.Units();
  const auto stream = selection_.filter.stream;
  std::erase_if(units, [&](const UnitPointer& unit) { return stream && unit->stream != *stream; });
  const std::string text = SrtText(units, document_.Context());
  if (Failed(WriteTextFile(session_.files, session_.reporter, *path, text))) return;
  session_.preferences.lastSrtDir = SplitPath(*path).folder;
}

void Editor::SaveInfoText() {
  const auto path =
      ChooseTarget("Save all selected subpic info as a text file", "(*.txt)|*.txt||", "");
  if (!path) return;
  frontEnd_.ShowBusy(true);
  const std::string text = InfoListText(selection_.List(), document_.Standard());
  frontEnd_.ShowBusy(false);
  (void)WriteTextFile(session_.files, session_.reporter, *path, text);
}

}  // namespace quillomar
