#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <vector>

#include "editor/command_table.h"

class QAction;
class QLabel;
class QMenu;
class QPushButton;
class QSplitter;
class QToolButton;

namespace quillomar {

class ApplyAllDialog;
class CommandMenus;
class ScreenModeChooser;
class Editor;
class InfoPane;
class KeyFilter;
class ListNavigator;
class LookPanel;
class OcrPanel;
class PictureView;
class PlacePanel;
class PreferencesDialog;
class ProgressWindow;
class QtFrontEnd;
class RetimeDialog;
class SearchPanel;
class SelectorPanel;
class TimePanel;
class VideoPanel;
class ZoomChooser;
class ZoomWindow;

// The editor's window.
class MainWindow final : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow(Editor& editor, QtFrontEnd& frontEnd);

  // Called once closing is agreed, before the files are released.
  void OnClosing(std::function<void()> action) { onClosing_ = std::move(action); }

  [[nodiscard]] ProgressWindow& Progress() { return *progress_; }
  [[nodiscard]] ApplyAllDialog& ApplyAll() { return *applyAll_; }
  [[nodiscard]] ZoomWindow& Zoom() { return *zoom_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct CommandButton {
    CommandId command;
    QPushButton* button;
  };

  [[nodiscard]] QWidget* MakePictureSide();
  [[nodiscard]] QWidget* MakeTextSide();
  [[nodiscard]] QWidget* MakeTextRow();
  [[nodiscard]] QWidget* MakeButtons();
  [[nodiscard]] QWidget* MakeEditStrip();
  [[nodiscard]] QPushButton* MakeCommandButton(CommandId command, const QString& text,
                                               const QString& objectName, const QString& toolTip);
  void AddContextMenu();
  void OrderParts();
  void MakeStatusBar();
  void ConnectFrontEnd(QtFrontEnd& frontEnd);
  void Refresh();
  void ShowVideo();
  void ShowStatus();
  void BeginJob(const QString& title);
  void EndJob();
  void Tick();
  void WaitForTool(const QString& program);
  void GoOnAfterTool();

  Editor& editor_;
  std::function<void()> onClosing_;
  PictureView* picture_;
  OcrPanel* ocr_;
  VideoPanel* video_;
  ListNavigator* navigator_;
  SelectorPanel* selectors_;
  SearchPanel* search_;
  InfoPane* info_;
  LookPanel* look_;
  PlacePanel* place_;
  TimePanel* time_;
  ZoomWindow* zoom_;
  ZoomChooser* zoomChooser_;
  ScreenModeChooser* screenMode_;
  PreferencesDialog* preferences_;
  ApplyAllDialog* applyAll_;
  RetimeDialog* retime_;
  std::vector<CommandButton> buttons_;
  QMenu* commandDisplay_;
  QLabel* videoStatus_ = nullptr;
  QLabel* listStatus_ = nullptr;
  CommandMenus* menus_ = nullptr;
  KeyFilter* keys_;
  ProgressWindow* progress_;
  QToolButton* textSwitch_ = nullptr;
  QWidget* textRow_ = nullptr;      // the buttons about text
  QWidget* unitButtons_ = nullptr;  // saving, reloading, applying
  QTimer timer_;                    // runs while a job does
  QPointer<QWidget> focusBeforeJob_;
  QPointer<QWidget> focusBeforeTool_;
  bool closeAfterJob_ = false;
};

}  // namespace quillomar
