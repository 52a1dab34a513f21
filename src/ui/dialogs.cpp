#include "ui/dialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QUrl>

#include "ui/about_text.h"
#include "ui/file_filter.h"

namespace quillomar {
namespace {

constexpr const char* kProgram = "Quillomar";

std::vector<std::string> ToPaths(const QStringList& names) {
  std::vector<std::string> paths;
  for (const QString& name : names) paths.push_back(name.toStdString());
  return paths;
}

using Buttons = QMessageBox::StandardButtons;

// Returns the button that was pressed. The text is shown as it stands: a name of a file in it may
// look like markup.
int ShowBox(QWidget* owner, QMessageBox::Icon icon, const std::string& text,
            Buttons buttons = QMessageBox::Ok,
            QMessageBox::StandardButton ofReturn = QMessageBox::Ok) {
  QMessageBox box(icon, kProgram, {}, buttons, owner);
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(text));
  box.setDefaultButton(ofReturn);
  return box.exec();
}

bool Ask(QWidget* owner, const std::string& question, QMessageBox::StandardButton ofReturn) {
  const Buttons buttons = QMessageBox::Yes | QMessageBox::No;
  return ShowBox(owner, QMessageBox::Question, question, buttons, ofReturn) == QMessageBox::Yes;
}

// An existing file is asked about; a name without an extension gets that of the chosen type.
void PrepareForSaving(QFileDialog& dialog) {
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  const auto addExtension = [&dialog](const QString& filter) {
    dialog.setDefaultSuffix(SuffixOf(filter));
  };
  addExtension(dialog.selectedNameFilter());
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, addExtension);
}

}  // namespace

QWidget* QtDialogs::Owner() const {
  QWidget* const open = QApplication::activeModalWidget();
  return open != nullptr ? open : parent_;
}

int QtDialogs::ShowError(const std::string& text) {
  return ShowBox(Owner(), QMessageBox::Critical, text);
}

void QtDialogs::ShowMessage(const std::string& text) {
  ShowBox(Owner(), QMessageBox::NoIcon, text);
}

bool QtDialogs::AskYesNo(const std::string& question) {
  return Ask(Owner(), question, QMessageBox::No);
}

bool QtDialogs::AskRecommended(const std::string& question) {
  return Ask(Owner(), question, QMessageBox::Yes);
}

bool QtDialogs::AskOkCancel(const std::string& question) {
  const Buttons buttons = QMessageBox::Ok | QMessageBox::Cancel;
  return ShowBox(Owner(), QMessageBox::Warning, question, buttons) == QMessageBox::Ok;
}

void QtDialogs::ShowAbout() {
  QMessageBox::about(Owner(), "About Quillomar", AboutText());
}

// The dialog is Qt's own on every desktop: its filters find "VTS_01_1.VOB" under "*.vob".
std::vector<std::string> QtDialogs::ChooseFiles(const FileRequest& request) {
  QFileDialog dialog(Owner(), QString::fromStdString(request.title),
                     QString::fromStdString(request.folder));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  const QStringList filters = NameFilters(request.filter);
  dialog.setNameFilters(filters);
  if (request.filterIndex != nullptr) dialog.selectNameFilter(filters.value(*request.filterIndex));
  dialog.selectFile(QString::fromStdString(request.name));
  if (request.forSaving) {
    PrepareForSaving(dialog);
  } else {
    dialog.setFileMode(request.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
  }
  if (dialog.exec() != QDialog::Accepted) return {};
  if (request.filterIndex != nullptr) {
    *request.filterIndex = static_cast<int>(filters.indexOf(dialog.selectedNameFilter()));
  }
  return ToPaths(dialog.selectedFiles());
}

std::optional<int> QtDialogs::ChooseItem(const std::string& title,
                                         const std::vector<std::string>& items) {
  QStringList texts;
  for (const std::string& item : items) texts.append(QString::fromStdString(item));
  bool accepted = false;
  const QString chosen = QInputDialog::getItem(Owner(), kProgram, QString::fromStdString(title),
                                               texts, 0, false, &accepted);
  if (!accepted) return std::nullopt;
  return static_cast<int>(texts.indexOf(chosen));
}

std::optional<Rgb> QtDialogs::ChooseColour(const std::string& title, Rgb start) {
  if (!colours_) {
    colours_ = new QColorDialog(parent_);
    colours_->setOption(QColorDialog::DontUseNativeDialog);
  }
  colours_->setWindowTitle(QString::fromStdString(title));
  colours_->setCurrentColor(QColor(start.r, start.g, start.b));
  if (colours_->exec() != QDialog::Accepted) return std::nullopt;
  const QColor chosen = colours_->selectedColor();
  return Rgb{static_cast<std::uint8_t>(chosen.red()), static_cast<std::uint8_t>(chosen.green()),
             static_cast<std::uint8_t>(chosen.blue())};
}

bool QtDialogs::OpenDocument(const std::string& pathOrUrl) {
  const QString text = QString::fromStdString(pathOrUrl);
  const QUrl url = QFileInfo::exists(text) ? QUrl::fromLocalFile(text) : QUrl(text);
  return QDesktopServices::openUrl(url);
}

void QtDialogs::Beep() {
  QApplication::beep();
}

}  // namespace quillomar
