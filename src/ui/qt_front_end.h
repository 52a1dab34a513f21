#pragma once

#include <QObject>
#include <QString>
#include <optional>

#include "base/reporting.h"
#include "editor/front_end.h"
#include "ui/qt_video_host.h"

namespace quillomar {

class Dialogs;

// What commands want from the window: dialogs are asked, changes are passed on as signals.
class QtFrontEnd final : public QObject, public FrontEnd {
  Q_OBJECT

 public:
  // `sound` may be null.
  explicit QtFrontEnd(Dialogs& dialogs, AudioOutput* sound = nullptr)
      : dialogs_(dialogs), video_(sound) {}

  // Hooks that show their messages and questions on the thread of this object; a worker that calls
  // one waits for the answer.
  [[nodiscard]] ReportingHooks Hooks();

  std::vector<std::string> ChooseFiles(const FileRequest& request) override;
  std::optional<int> ChooseItem(const std::string& title,
                                const std::vector<std::string>& items) override;
  bool RunProgram(const std::string& program, const std::string& arguments,
                  const std::string& file) override;
  std::optional<ApplyAllChoices> ChooseModifications(const ApplyAllChoices& offered) override;
  std::optional<double> ChooseStartChange(const RetimeRequest& request) override;
  std::optional<Rgb> ChooseColour(const std::string& title, Rgb start) override;
  bool OpenDocument(const std::string& pathOrUrl) override;
  void ShowMessage(const std::string& text) override;
  void ShowAbout() override;
  void ShowPreferences() override { emit PreferencesRequested(); }
  void ExtractManual(const std::string& path) override;
  std::string PageAddress(const std::string& page) override;
  void CloseWindow() override { emit CloseRequested(); }
  void ShowBusy(bool on) override;
  void Beep() override;
  void FocusCharacters() override { emit CharactersRequested(); }
  QtVideoHost* Video() override { return &video_; }
  void Refresh() override { emit Changed(); }
  void JobStarted(const std::string& title) override {
    emit JobBegan(QString::fromStdString(title));
  }
  void JobEnded() override { emit JobOver(); }

 signals:
  void CloseRequested();
  void PreferencesRequested();
  // The answers go into the last argument before the signal returns.
  void CharactersRequested();
  void ModificationsRequested(const ApplyAllChoices& offered,
                              std::optional<ApplyAllChoices>& chosen);
  void StartChangeRequested(const RetimeRequest& request, std::optional<double>& seconds);
  // Another program has the user's attention, from here to its end.
  void ToolStarted(const QString& program);
  void ToolEnded();
  void Changed();
  void JobBegan(const QString& title);
  void JobOver();

 private:
  Dialogs& dialogs_;
  QtVideoHost video_;
};

}  // namespace quillomar
