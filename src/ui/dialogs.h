#pragma once

#include <QPointer>
#include <optional>
#include <string>
#include <vector>

#include "dvd/clut.h"
#include "editor/front_end.h"

class QColorDialog;
class QWidget;

namespace quillomar {

// Everything that stops the user with a window of its own, or leaves the program. Tests answer in
// its place. For the user-interface thread.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // Returns the message box's result.
  virtual int ShowError(const std::string& text) = 0;
  virtual void ShowMessage(const std::string& text) = 0;
  virtual bool AskYesNo(const std::string& question) = 0;
  // As AskYesNo, but Return answers Yes.
  virtual bool AskRecommended(const std::string& question) = 0;
  virtual bool AskOkCancel(const std::string& question) = 0;
  virtual void ShowAbout() = 0;
  // As FrontEnd has them.
  virtual std::vector<std::string> ChooseFiles(const FileRequest& request) = 0;
  virtual std::optional<int> ChooseItem(const std::string& title,
                                        const std::vector<std::string>& items) = 0;
  virtual std::optional<Rgb> ChooseColour(const std::string& title, Rgb start) = 0;
  virtual bool OpenDocument(const std::string& pathOrUrl) = 0;
  virtual void Beep() = 0;
};

// The real ones.
class QtDialogs final : public Dialogs {
 public:
  // The window that the dialogs belong to; none until it is made.
  void SetParent(QWidget* parent) { parent_ = parent; }

  int ShowError(const std::string& text) override;
  void ShowMessage(const std::string& text) override;
  bool AskYesNo(const std::string& question) override;
  bool AskRecommended(const std::string& question) override;
  bool AskOkCancel(const std::string& question) override;
  void ShowAbout() override;
  std::vector<std::string> ChooseFiles(const FileRequest& request) override;
  std::optional<int> ChooseItem(const std::string& title,
                                const std::vector<std::string>& items) override;
  std::optional<Rgb> ChooseColour(const std::string& title, Rgb start) override;
  bool OpenDocument(const std::string& pathOrUrl) override;
  void Beep() override;

 private:
  // What a dialog belongs to: the one that is open, else the window.
  [[nodiscard]] QWidget* Owner() const;

  QWidget* parent_ = nullptr;
  QPointer<QColorDialog> colours_;  // made once, so that it keeps the user's own colours
};

}  // namespace quillomar
