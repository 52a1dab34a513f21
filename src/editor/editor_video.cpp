// Commands of the video; its desk does them.

#include "editor/editor.h"

namespace quillomar {

void Editor::SaveVideoFrame() {
  video_.SaveFrame();
}
void Editor::PlayOrStop() {
  video_.TogglePlayback(false);
}
void Editor::LoopOrStop() {
  video_.TogglePlayback(true);
}
void Editor::NextAudio() {
  video_.StepAudio(1);
}
void Editor::PreviousAudio() {
  video_.StepAudio(-1);
}

}  // namespace quillomar
