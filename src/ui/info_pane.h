#pragma once

#include <QTextEdit>
#include <string>

namespace quillomar {

// The pane that describes the current subpicture and its commands.
class InfoPane final : public QTextEdit {
  Q_OBJECT

 public:
  explicit InfoPane(QWidget* parent = nullptr);

  // Shows a rich-text document (RTF); an empty one clears the pane.
  void ShowRtf(const std::string& rtf);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Rebuild();

  std::string rtf_;
};

// A colour of the document made readable on a background: kept where the two differ enough in
// lightness, else mirrored in lightness.
[[nodiscard]] QColor ReadableOn(const QColor& background, const QColor& colour);

}  // namespace quillomar
