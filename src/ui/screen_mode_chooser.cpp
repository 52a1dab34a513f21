#include "ui/screen_mode_chooser.h"

#include <QSignalBlocker>

#include "editor/editor.h"
#include "ui/control_names.h"

namespace quillomar {

ScreenModeChooser::ScreenModeChooser(Editor& editor, QWidget* parent) : QComboBox(parent) {
  NameControl(*this, "displayMode", "Aspect ratio and display mode",
              "Select the aspect ratio and for 16:9 the desired display mode.");
  addItems({"4:3", "16:9 Wide", "16:9 Letterbox", "16:9 Pan & Scan"});
  connect(this, &QComboBox::currentIndexChanged, this,
          [&editor](int mode) { editor.ChooseScreenMode(static_cast<ScreenMode>(mode)); });
}

void ScreenModeChooser::Show(const View& view) {
  const QSignalBlocker blocker(this);
  setCurrentIndex(static_cast<int>(view.screenMode));
  setEnabled(view.hasSet);
}

}  // namespace quillomar
