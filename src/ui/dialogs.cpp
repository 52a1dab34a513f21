#include "ui/dialogs.h"

#include <QColorDialog>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
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

}  // namespace

int QtDialogs::ShowError(const std::string& text) {
  return QMessageBox::critical(parent_, kProgram, QString::fromStdString(text));
}

void QtDialogs::ShowMessage(const std::string& text) {
  QMessageBox box(QMessageBox::NoIcon, kProgram, QString::fromStdString(text), QMessageBox::Ok,
                  parent_);
  box.exec();
}

bool QtDialogs::AskYesNo(const std::string& question) {
  return QMessageBox::question(parent_, kProgram, QString::fromStdString(question),
                               QMessageBox::Yes | QMessageBox::No,
                               QMessageBox::No) == QMessageBox::Yes;
}

bool QtDialogs::AskOkCancel(const std::string& question) {
  return QMessageBox::warning(parent_, kProgram, QString::fromStdString(question),
                              QMessageBox::Ok | QMessageBox::Cancel,
                              QMessageBox::Ok) == QMessageBox::Ok;
}

void QtDialogs::ShowAbout() {
  QMessageBox::about(parent_, "About Quillomar", AboutText());
}

// The dialog is Qt's own on every desktop: its filters find "VTS_01_1.VOB" under "*.vob".
std::vector<std::string> QtDialogs::ChooseFiles(const FileRequest& request) {
  QFileDialog dialog(parent_, QString::fromStdString(request.title),
                     QString::fromStdString(request.folder));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setNameFilters(NameFilters(request.filter));
  dialog.selectFile(QString::fromStdString(request.name));
  if (request.forSaving) {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
  } else {
    dialog.setFileMode(request.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
  }
  return dialog.exec() == QDialog::Accepted ? ToPaths(dialog.selectedFiles())
                                            : std::vector<std::string>();
}

std::optional<Rgb> QtDialogs::ChooseColour(const std::string& title, Rgb start) {
  const QColor chosen = QColorDialog::getColor(QColor(start.r, start.g, start.b), parent_,
                                               QString::fromStdString(title));
  if (!chosen.isValid()) return std::nullopt;
  return Rgb{static_cast<std::uint8_t>(chosen.red()), static_cast<std::uint8_t>(chosen.green()),
             static_cast<std::uint8_t>(chosen.blue())};
}

bool QtDialogs::OpenDocument(const std::string& pathOrUrl) {
  const QString text = QString::fromStdString(pathOrUrl);
  const QUrl url = QFileInfo::exists(text) ? QUrl::fromLocalFile(text) : QUrl(text);
  return QDesktopServices::openUrl(url);
}

}  // namespace quillomar
