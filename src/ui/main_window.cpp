#include "ui/main_window.h"

#include <QAction>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QToolButton>
#include <chrono>

#include "editor/editor.h"
#include "settings/preferences.h"
#include "ui/apply_all_dialog.h"
#include "ui/control_names.h"
#include "ui/focus_mark.h"
#include "ui/hold_filter.h"
#include "ui/info_pane.h"
#include "ui/key_filter.h"
#include "ui/list_navigator.h"
#include "ui/look_panel.h"
#include "ui/menu_builder.h"
#include "ui/ocr_panel.h"
#include "ui/picture_view.h"
#include "ui/place_panel.h"
#include "ui/preferences_dialog.h"
#include "ui/progress_window.h"
#include "ui/qt_front_end.h"
#include "ui/retime_dialog.h"
#include "ui/screen_mode_chooser.h"
#include "ui/search_panel.h"
#include "ui/selector_panel.h"
#include "ui/time_panel.h"
#include "ui/video_panel.h"
#include "ui/zoom_window.h"

namespace quillomar {
namespace {

constexpr std::chrono::milliseconds kTickInterval{200};
constexpr QSize kTemplateSize(1180, 820);
// What a desktop may draw around the window.
constexpr QSize kFrameSize(12, 42);
constexpr int kTextSideWidth = 330;
constexpr int kStatusMargin = 6;
constexpr int kWideAspect = 3;

QString VideoText(const View& view) {
  if (!view.hasSet) return {};
  return QString("%1, %2 x %3, %4")
      .arg(IsPal(view.standard) ? "PAL" : "NTSC")
      .arg(kPictureWidth)
      .arg(FrameHeight(view.standard))
      .arg(view.aspect == kWideAspect ? "16:9" : "4:3");
}

std::vector<std::string> LocalFiles(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
  }
  return paths;
}

}  // namespace

MainWindow::MainWindow(Editor& editor, QtFrontEnd& frontEnd)
    : editor_(editor),
      picture_(new PictureView(this)),
      ocr_(new OcrPanel(editor, *picture_, this)),
      video_(new VideoPanel(editor, this)),
      navigator_(new ListNavigator(editor, this)),
      selectors_(new SelectorPanel(editor, this)),
      search_(new SearchPanel(editor, this)),
      info_(new InfoPane(this)),
      look_(new LookPanel(editor, this)),
      place_(new PlacePanel(editor, this)),
      time_(new TimePanel(editor, this)),
      zoom_(new ZoomWindow(this)),
      zoomChooser_(new ZoomChooser(*zoom_, this)),
      screenMode_(new ScreenModeChooser(editor, this)),
      preferences_(new PreferencesDialog(editor.Context(), frontEnd, this)),
      applyAll_(new ApplyAllDialog(this)),
      retime_(new RetimeDialog(this)),
      commandDisplay_(new QMenu("Command display", this)),
      keys_(new KeyFilter(editor, this)),
      progress_(new ProgressWindow(this)) {
  setObjectName("mainWindow");
  setAcceptDrops(true);
  new HoldFilter(editor, this);
  menus_ = new CommandMenus(editor, *menuBar());
  auto* const sides = new QSplitter(Qt::Horizontal, this);
  sides->setObjectName("sides");
  sides->setChildrenCollapsible(false);
  sides->addWidget(MakePictureSide());
  sides->addWidget(MakeTextSide());
  sides->setStretchFactor(0, 1);
  sides->setStretchFactor(1, 0);
  auto* const centre = new QWidget(this);
  auto* const layout = new QVBoxLayout(centre);
  layout->addWidget(sides, 1);
  layout->addWidget(MakeEditStrip());
  setCentralWidget(centre);
  // Files are dropped on the window, wherever on it.
  for (QLineEdit* const box : centre->findChildren<QLineEdit*>()) box->setAcceptDrops(false);
  OrderParts();
  MakeStatusBar();
  new FocusMark(this);
  keys_->Watch(*this);
  keys_->Watch(*progress_);
  keys_->Watch(*zoom_);
  ConnectFrontEnd(frontEnd);
  resize(kTemplateSize.boundedTo(screen()->availableSize() - kFrameSize));
  setFocus();
  Refresh();
}

QWidget* MainWindow::MakePictureSide() {
  auto* const side = new QWidget(this);
  auto* const layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(picture_, 1);
  layout->addWidget(ocr_);
  auto* const row = new QHBoxLayout;
  row->addWidget(navigator_, 1);
  row->addWidget(screenMode_);
  row->addWidget(zoomChooser_);
  layout->addLayout(row);
  auto* const lastRow = new QHBoxLayout;
  lastRow->addWidget(video_, 1);
  lastRow->addWidget(MakeTextRow());
  layout->addLayout(lastRow);
  return side;
}

// The text stands under the picture where there is one, unless the user sends it away.
QWidget* MainWindow::MakeTextRow() {
  textRow_ = new QWidget(this);
  textSwitch_ = new QToolButton(this);
  textSwitch_->setText("Text");
  textSwitch_->setCheckable(true);
  textSwitch_->setFocusPolicy(Qt::StrongFocus);
  NameControl(*textSwitch_, "showText", "Recognized text", "Display or hide the recognized text");
  connect(textSwitch_, &QToolButton::toggled, ocr_, &OcrPanel::setVisible);
  connect(ocr_, &OcrPanel::TextWanted, textSwitch_, [this] { textSwitch_->setChecked(true); });
  auto* const row = new QHBoxLayout(textRow_);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(textSwitch_);
  row->addWidget(MakeCommandButton(CommandId::kOcrSelected, "OCR all", "ocrButton",
                                   "Run Optical Character Recognition on selected subpics"));
  row->addWidget(MakeCommandButton(CommandId::kSaveSrt, "Save as .srt", "saveSrtButton",
                                   "Save subpics as .srt file"));
  return textRow_;
}

QWidget* MainWindow::MakeTextSide() {
  auto* const side = new QWidget(this);
  side->setMinimumWidth(kTextSideWidth);
  auto* const layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  AddContextMenu();
  layout->addWidget(selectors_);
  layout->addWidget(search_);
  layout->addWidget(info_, 1);
  layout->addWidget(MakeButtons());
  return side;
}

void MainWindow::AddContextMenu() {
  const Command& command = FindCommandById(CommandId::kSaveInfoText);
  commandDisplay_->setObjectName("commandDisplayMenu");
  commandDisplay_->setAccessibleName(commandDisplay_->title());
  commandDisplay_->addSection(commandDisplay_->title());
  QAction* const save = commandDisplay_->addAction(QString::fromUtf8(command.text.data()));
  save->setObjectName(QString::fromUtf8(command.name.data()));
  connect(save, &QAction::triggered, this, [this, id = command.id] { editor_.Run(id); });
  info_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(info_, &QWidget::customContextMenuRequested, this, [this, save](QPoint place) {
    save->setEnabled(editor_.Enabled(FindCommandById(CommandId::kSaveInfoText)));
    commandDisplay_->popup(info_->mapToGlobal(place));
  });
}

QWidget* MainWindow::MakeButtons() {
  unitButtons_ = new QWidget(this);
  auto* const buttons = new QGridLayout(unitButtons_);
  buttons->setContentsMargins(0, 0, 0, 0);
  buttons->addWidget(MakeCommandButton(CommandId::kReloadUnit, "&Reload subpic", "reloadSubpicture",
                                       "Reloads this subpic from disk"),
                     0, 0);
  buttons->addWidget(MakeCommandButton(CommandId::kSaveAll, "Save &all", "saveAllButton",
                                       "Saves all the changes back to file."),
                     0, 1);
  buttons->addWidget(MakeCommandButton(CommandId::kReloadAll, "Reload all", "reloadAllButton",
                                       "Reloads all selected subpics from disk"),
                     1, 0);
  buttons->addWidget(
      MakeCommandButton(CommandId::kApplyLastToAll, "Apply to all", "applyToAllButton",
                        "Apply these modifications to all selected subpics"),
      1, 1);
  return unitButtons_;
}

QWidget* MainWindow::MakeEditStrip() {
  auto* const strip = new QWidget(this);
  auto* const layout = new QHBoxLayout(strip);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(look_, 1);
  layout->addWidget(place_, 1);
  layout->addWidget(time_, 1);
  strip->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  return strip;
}

// Tab goes through the window as one reads it.
void MainWindow::OrderParts() {
  const QList<QWidget*> parts = {picture_,     ocr_,     navigator_, screenMode_, zoomChooser_,
                                 video_,       textRow_, selectors_, search_,     info_,
                                 unitButtons_, look_,    place_,     time_};
  QList<QWidget*> stops;
  for (QWidget* const part : parts) stops << TabStops(*part);
  OrderTabs(stops);
}

QPushButton* MainWindow::MakeCommandButton(CommandId command, const QString& text,
                                           const QString& objectName, const QString& toolTip) {
  auto* const button = new QPushButton(text, this);
  NameControl(*button, objectName, QString(text).remove('&'), toolTip);
  connect(button, &QPushButton::clicked, this, [this, command] { editor_.Run(command); });
  buttons_.push_back({command, button});
  return button;
}

void MainWindow::MakeStatusBar() {
  listStatus_ = new QLabel(this);
  listStatus_->setObjectName("listStatus");
  videoStatus_ = new QLabel(this);
  videoStatus_->setObjectName("videoStatus");
  listStatus_->setContentsMargins(kStatusMargin, 0, 0, 0);
  statusBar()->addWidget(listStatus_, 1);
  statusBar()->addPermanentWidget(videoStatus_);
}

void MainWindow::ConnectFrontEnd(QtFrontEnd& frontEnd) {
  timer_.setInterval(kTickInterval);
  connect(&timer_, &QTimer::timeout, this, &MainWindow::Tick);
  connect(&frontEnd, &QtFrontEnd::Changed, this, &MainWindow::Refresh);
  connect(picture_, &PictureView::StepRequested, this,
          [this](int direction) { editor_.Video().Step(direction); });
  connect(frontEnd.Video(), &QtVideoHost::Changed, this, &MainWindow::ShowVideo);
  connect(&frontEnd, &QtFrontEnd::JobBegan, this, &MainWindow::BeginJob);
  connect(&frontEnd, &QtFrontEnd::JobOver, this, &MainWindow::EndJob);
  connect(&frontEnd, &QtFrontEnd::CloseRequested, this, &MainWindow::close);
  connect(&frontEnd, &QtFrontEnd::CharactersRequested, search_, &SearchPanel::FocusCharacters);
  connect(&frontEnd, &QtFrontEnd::PreferencesRequested, preferences_, &PreferencesDialog::exec);
  connect(&frontEnd, &QtFrontEnd::ModificationsRequested, this,
          [this](const ApplyAllChoices& offered, std::optional<ApplyAllChoices>& chosen) {
            chosen = applyAll_->Choose(offered);
          });
  connect(&frontEnd, &QtFrontEnd::StartChangeRequested, this,
          [this](const RetimeRequest& request, std::optional<double>& seconds) {
            seconds = retime_->Choose(request);
          });
  connect(&frontEnd, &QtFrontEnd::ToolStarted, this, &MainWindow::WaitForTool);
  connect(&frontEnd, &QtFrontEnd::ToolEnded, this, &MainWindow::GoOnAfterTool);
  connect(zoom_, &ZoomWindow::Changed, this, &MainWindow::Refresh);
  connect(preferences_, &PreferencesDialog::BackgroundChanged, this, &MainWindow::Refresh);
  connect(progress_, &ProgressWindow::AbortRequested, this,
          [this] { editor_.Run(CommandId::kAbort); });
}

void MainWindow::Refresh() {
  const View& view = editor_.CurrentView();
  const ColourBytes background = SplitColour(editor_.Context().preferences.backgroundColour);
  setWindowTitle(QString::fromStdString(view.title));
  const Rgb backgroundColour{background.red, background.green, background.blue};
  picture_->SetBackground(backgroundColour);
  picture_->Show(view);
  zoom_->Show(view, backgroundColour);
  if (!view.hasSet) {
    textSwitch_->setChecked(false);
    // Else it would go from the list to what happens to be usable without one.
    setFocus();
  }
  textSwitch_->setEnabled(view.hasSet);
  ocr_->Show(view, editor_.Busy());
  navigator_->Show(view);
  video_->Show(view.video, editor_.Busy());
  screenMode_->Show(view);
  selectors_->Show(view, editor_.Busy());
  search_->Show(view, editor_.Busy());
  info_->ShowRtf(view.infoRtf);
  look_->Show(view, editor_.Busy());
  place_->Show(view, editor_.Busy());
  time_->Show(view, editor_.Busy());
  for (const auto& [command, button] : buttons_) {
    button->setEnabled(editor_.Enabled(FindCommandById(command)));
  }
  menus_->Update();
  ShowStatus();
}

// Comes many times a second while video plays.
void MainWindow::ShowVideo() {
  const View& view = editor_.CurrentView();
  picture_->Show(view);
  video_->Show(view.video, editor_.Busy());
  if (!view.video.playing) menus_->Update();
}

void MainWindow::ShowStatus() {
  const View& view = editor_.CurrentView();
  QString text = "Open VOB files from the File menu, or drop them here";
  if (editor_.Busy()) {
    text = QString::fromStdString(editor_.JobLabel());
  } else if (view.hasSet) {
    text = view.count == 0 ? QString("No subpics in this selection")
                           : QString("Subpic %1 of %2").arg(view.index + 1).arg(view.count);
  }
  listStatus_->setText(text);
  videoStatus_->setText(VideoText(view));
}

void MainWindow::BeginJob(const QString& title) {
  focusBeforeJob_ = focusWidget();
  setAcceptDrops(false);
  progress_->Begin(title.isEmpty() ? QString::fromStdString(editor_.JobLabel()) : title,
                   editor_.JobCanStop());
  timer_.start();
  Refresh();
}

// Comes before the editor's last look at the list, which shows everything anew.
void MainWindow::EndJob() {
  timer_.stop();
  progress_->End();
  setAcceptDrops(true);
  Refresh();
  if (focusBeforeJob_ && focusBeforeJob_ != this) {
    focusBeforeJob_->setFocus();
  } else {
    navigator_->TakeFocus();
  }
  if (closeAfterJob_) QTimer::singleShot(0, this, &MainWindow::close);
  closeAfterJob_ = false;
}

void MainWindow::Tick() {
  editor_.Tick();
  const Session& session = editor_.Context();
  progress_->ShowProgress({QString::fromStdString(editor_.JobLabel()),
                           QString::fromStdString(session.reporter.StatusText()),
                           QString::fromStdString(editor_.JobTimeLeft()), session.job.percent,
                           editor_.JobCanStop()});
}

// The window still paints itself and answers the desktop, but takes nothing from the user.
void MainWindow::WaitForTool(const QString& program) {
  focusBeforeTool_ = focusWidget();
  setEnabled(false);
  listStatus_->setText("Waiting for the end of " + QFileInfo(program).fileName());
}

void MainWindow::GoOnAfterTool() {
  setEnabled(true);
  if (focusBeforeTool_) focusBeforeTool_->setFocus();
  ShowStatus();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (!isEnabled()) return;
  if (editor_.Busy()) {
    closeAfterJob_ = true;
    editor_.Run(CommandId::kAbort);
    return;
  }
  if (!editor_.MayClose()) return;
  if (onClosing_) onClosing_();
  editor_.CloseFiles();
  event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (isEnabled() && !editor_.Busy() && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

// What follows may ask questions; the program that the files come from must not wait for that.
void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  QTimer::singleShot(0, this,
                     [this, paths = LocalFiles(*event->mimeData())] { editor_.DropFiles(paths); });
}

}  // namespace quillomar
