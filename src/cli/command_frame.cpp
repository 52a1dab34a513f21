// The video frame behind a subpicture.

#include "base/format.h"
#include "cli/cli_call.h"
#include "editor/unit_frame.h"
#include "video/video_engine.h"

namespace quillomar {
namespace {

FramePointer FindFrame(const CliCall& call, const SubpictureUnit& unit) {
  VideoEngine engine(call.session.files, call.session.reporter);
  engine.Open(call.editor.Doc().Files());
  if (!engine.ShowFrame(FrameRequestFor(unit))) return nullptr;
  while (Failed(engine.Wait())) {
  }
  return engine.CurrentFrame();
}

}  // namespace

int RunFrame(const CliCall& call) {
  const UnitList units = call.SelectedUnits();
  if (units.size() != 1) return call.Refuse("frame takes exactly one subpicture: --numbers N");
  if (call.options.outPath.empty()) return call.Refuse("frame needs --out FILE.bmp");
  const SubpictureUnit& unit = *units.front();
  const FramePointer found = FindFrame(call, unit);
  if (!found) return call.Refuse(Format("Subpic %d has no video frame", unit.number));
  VideoFrame frame = *found;
  if (call.options.composed) {
    call.editor.GoTo(unit.number - 1);
    LayOver(frame, call.editor.CurrentView().picture);
  }
  if (Failed(SaveFrame(call.session.files, call.options.outPath, frame))) {
    return call.Refuse("Couldn't write " + call.options.outPath);
  }
  return kCliDone;
}

}  // namespace quillomar
