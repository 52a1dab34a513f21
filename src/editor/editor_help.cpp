// The help menu.

#include "base/paths.h"
#include "base/platform.h"
#include "editor/editor.h"

namespace quillomar {

void Editor::ViewLog() {
  if (!session_.logPath.empty()) (void)frontEnd_.OpenDocument(session_.logPath);
}

void Editor::ShowManual() {
  const auto folder = EnvironmentVariable("TEMP");
  bool opened = false;
  if (folder) {
    const std::string path = JoinPath(*folder, "Temp1.pdf");
    frontEnd_.ExtractManual(path);
    opened = session_.files.Exists(path) && frontEnd_.OpenDocument(path);
  }
  if (!opened) frontEnd_.ShowMessage("Can't open help!!");
}

void Editor::ShowWeb() {
  (void)frontEnd_.OpenDocument(frontEnd_.PageAddress("index.html"));
}

void Editor::ShowGuideHearingImpaired() {
  (void)frontEnd_.OpenDocument(frontEnd_.PageAddress("remove-hearing-impaired-text.html"));
}

void Editor::ShowGuideColours() {
  (void)frontEnd_.OpenDocument(frontEnd_.PageAddress("change-subtitle-colours.html"));
}

void Editor::ShowAbout() {
  frontEnd_.ShowAbout();
}

}  // namespace quillomar
