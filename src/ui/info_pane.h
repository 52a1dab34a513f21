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

// A colour of the document made readable on the palette's base: kept where the contrast is enough,
// else lightened or darkened until it is; a grey becomes the text colour.
[[nodiscard]] QColor ReadableOn(const QPalette& palette, const QColor& colour);

}  // namespace quillomar
