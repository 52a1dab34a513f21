#include "ui/preferences_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleValidator>
#include <QFormLayout>
#include <QGroupBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "base/paths.h"
#include "editor/front_end.h"
#include "editor/session.h"
#include "ui/control_names.h"
#include "ui/swatch_button.h"

namespace quillomar {
namespace {

constexpr int kNumberWidth = 70;
constexpr int kLongestText = 512;
constexpr int kWordSpacings = 15;
constexpr int kPixelsPerSpacing = 2;

enum Group { kAfterModifications, kRemoval, kOcr, kGeneral, kBitmap };

struct CheckText {
  Group group;
  std::int32_t Preferences::*field;
  const char* name;
  const char* label;
  const char* toolTip;
};

// clang-format off
constexpr CheckText kChecks[] = {
    {kAfterModifications, &Preferences::ocrRecenter, "recenter", "Re-center modified subtitles",
     "After erasing part of a subtitle line, recenters it were it was before"},
    {kAfterModifications, &Preferences::ocrAlignBottom, "alignBottom", "Re-align bottom of modified subtitles",
     "When erasing a full line of text, moves lines above down to fill the gap"},
    {kRemoval, &Preferences::ocrBracketSquare, "bracketSquare", "Remove text between square brackets, e.g. [ laughs ]",
     "Erases text between square brackets"},
    {kRemoval, &Preferences::ocrBracketParentheses, "bracketParentheses", "Remove text in parentheses, e.g. ( laughs )",
     "Erases text between parentheses"},
    {kRemoval, &Preferences::ocrBracketNotes, "bracketNotes", "Remove text between music notes, e.g. # sings #",
     "Erases text between music notes (#)"},
    {kOcr, &Preferences::ocrItalics, "italics", "Detect text in italics (recommended!)",
     "Detects text in italics and straightens it before OCR"},
    {kRemoval, &Preferences::ocrRemoveSpeakers, "removeSpeakers", "Remove single word followed by colon (e.g. \"Man: No way\") ",
     "Erase single word followed by column, as in \"Man : What is that about\""},
    {kBitmap, &Preferences::warnOnBitmapImport, "warnOnBitmapImport", "Flag CLUT problems for bitmap import",
     "Warn if the bitmap uses only 3 colors, during bitmap export/import operations"},
    {kOcr, &Preferences::ocrCaseSensitive, "caseSensitive", "Case sensitive searches",
     "Select case-sensitive searches on OCR output"},
    {kGeneral, &Preferences::askForIfos, "askForIfos", "Open IFO after loading sup files",
     "Always open \"Open IFO\" panel after loading .sup files"},
    {kGeneral, &Preferences::alertIfClosedCaptions, "alertIfClosedCaptions", "Alert if Closed Captions",
     "Pop an alert message if Closed Captions are detected in the mpeg video stream"},
    {kGeneral, &Preferences::autoDisplayMode, "autoDisplayMode", "Adapt display mode to subpic stream",
     "Automatically adjust 16:9 display mode as a function of subpic stream display mode(s)"},
    {kBitmap, &Preferences::editBitmapAs24Bit, "editAs24Bit", "Edit bitmap as 24-bit bmp file",
     "Save bitmap as 24-bit or 4-bit bmp file while editing subpic by hand"},
};
// clang-format on

QStringList WordSpacings() {
  QStringList entries = {"Auto"};
  for (int i = 1; i <= kWordSpacings; ++i) {
    entries.append(QString("%1 pixels").arg(i * kPixelsPerSpacing));
  }
  return entries;
}

// A control with a text after it.
QWidget* WithUnit(QWidget& control, const QString& unit) {
  auto* const both = new QWidget;
  auto* const layout = new QHBoxLayout(both);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(&control);
  layout->addWidget(new QLabel(unit, both), 1);
  return both;
}

void AddRow(QFormLayout& form, const QString& text, QWidget& control, QWidget& row) {
  auto* const label = new QLabel(text);
  label->setBuddy(&control);
  form.addRow(label, &row);
}

}  // namespace

PreferencesDialog::PreferencesDialog(Session& session, FrontEnd& frontEnd, QWidget* parent)
    : QDialog(parent), session_(session), preferences_(session.preferences), frontEnd_(frontEnd) {
  setObjectName("preferences");
  setWindowTitle("Preferences");
  auto* const layout = new QGridLayout(this);
  layout->addWidget(MakeHearingImpaired(), 0, 0);
  layout->addWidget(MakeOcr(), 1, 0);
  layout->addWidget(MakeGeneral(), 0, 1);
  layout->addWidget(MakeBitmapEditing(), 1, 1);
  layout->addWidget(new QLabel("MORE TO COME!", this), 2, 0);
  layout->addWidget(MakeButtons(), 2, 1);
}

QDialogButtonBox* PreferencesDialog::MakeButtons() {
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  NameControl(*buttons->button(QDialogButtonBox::Ok), "preferencesOk", "OK",
              "Takes the preferences as they stand here");
  NameControl(*buttons->button(QDialogButtonBox::Cancel), "preferencesCancel", "Cancel",
              "Closes the preferences and puts back the background color");
  connect(buttons, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);
  return buttons;
}

QWidget* PreferencesDialog::MakeChecks(int group) {
  auto* const side = new QWidget(this);
  auto* const layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const CheckText& text : kChecks) {
    if (text.group != group) continue;
    auto* const box = new QCheckBox(text.label, side);
    NameControl(*box, text.name, QString(text.label).trimmed(), text.toolTip);
    layout->addWidget(box);
    checks_.push_back({box, text.field});
  }
  return side;
}

QComboBox* PreferencesDialog::MakeChoice(std::int32_t Preferences::*field,
                                         const QStringList& entries) {
  auto* const box = new QComboBox(this);
  box->addItems(entries);
  choices_.push_back({box, field});
  return box;
}

QGroupBox* PreferencesDialog::MakeHearingImpaired() {
  auto* const group = new QGroupBox("Hearing-impaired text removal", this);
  auto* const layout = new QVBoxLayout(group);
  layout->addWidget(MakeChecks(kRemoval));
  layout->addWidget(new QLabel("After modifications:", group));
  layout->addWidget(MakeChecks(kAfterModifications));
  layout->addStretch(1);
  return group;
}

QGroupBox* PreferencesDialog::MakeOcr() {
  auto* const group = new QGroupBox("Optical Character Recognition", this);
  auto* const form = new QFormLayout(group);
  form->addRow(MakeChecks(kOcr));
  QComboBox* const spacing = MakeChoice(&Preferences::ocrSpaceSelect, WordSpacings());
  NameControl(*spacing, "wordSpacing", "Word boundary detection",
              "Select Auto, large values if extra spaces occur in the OCR, or small values if "
              "words are glued together");
  AddRow(*form, "Word boundary detection:", *spacing, *spacing);
  return group;
}

QGroupBox* PreferencesDialog::MakeGeneral() {
  auto* const group = new QGroupBox("General settings", this);
  auto* const form = new QFormLayout(group);
  QComboBox* const rate =
      MakeChoice(&Preferences::frameDownSampling,
                 {"All frames", "Every 2nd frame", "Every 3rd frame", "Every 4th frame"});
  NameControl(*rate, "playbackRate", "Playback rate",
              "Frame per second for video playback. Adjust if audio stutters on a slow machine");
  AddRow(*form, "Playback rate:", *rate, *rate);
  form->addRow(MakeChecks(kGeneral));
  QWidget& range = *MakeRange();
  AddRow(*form, "Retiming slider range: +/-", *range_, range);
  auto& cropX = *new QLineEdit(group);
  NameControl(cropX, "cropBorderX", "Crop background border X in pixels",
              "When cropping the background, how much wider than the text should the background "
              "be.");
  AddRow(*form, "Crop background border X:", cropX, *MakeMargin(cropX, &Preferences::cropBorderX));
  auto& cropY = *new QLineEdit(group);
  NameControl(cropY, "cropBorderY", "Crop background border Y in pixels",
              "When cropping the background, how much taller than the text should the background "
              "be.");
  AddRow(*form, "Crop background border Y:", cropY, *MakeMargin(cropY, &Preferences::cropBorderY));
  background_ = new SwatchButton(this);
  NameControl(*background_, "backgroundColor", "Default video background color",
              "Click to select background color when no video is shown");
  connect(background_, &SwatchButton::Picked, this, &PreferencesDialog::PickBackground);
  AddRow(*form, "Default video background color:", *background_, *background_);
  return group;
}

QWidget* PreferencesDialog::MakeMargin(QLineEdit& edit, std::int32_t Preferences::*field) {
  edit.setValidator(new QIntValidator(&edit));
  edit.setMaximumWidth(kNumberWidth);
  numbers_.push_back({&edit, field});
  return WithUnit(edit, "pixels");
}

QWidget* PreferencesDialog::MakeRange() {
  range_ = new QLineEdit(this);
  NameControl(*range_, "retimingRange", "Retiming slider range in seconds",
              "Sets the range of the retiming slider");
  auto* const validator = new QDoubleValidator(range_);
  validator->setLocale(QLocale::c());
  range_->setValidator(validator);
  range_->setMaximumWidth(kNumberWidth);
  return WithUnit(*range_, "sec.");
}

QGroupBox* PreferencesDialog::MakeBitmapEditing() {
  auto* const group = new QGroupBox("Bitmap Editing", this);
  auto* const form = new QFormLayout(group);
  form->addRow(MakeChecks(kBitmap));
  QWidget& toolPath = *MakeToolPath();
  AddRow(*form, "Tool Path:", *toolPath_, toolPath);
  toolArguments_ = new QLineEdit(this);
  NameControl(*toolArguments_, "toolArguments", "Optional arguments",
              "Optional command line argument for bitmap editing tool");
  toolArguments_->setMaxLength(kLongestText);
  AddRow(*form, "Optional arguments:", *toolArguments_, *toolArguments_);
  return group;
}

QWidget* PreferencesDialog::MakeToolPath() {
  const char* const toolTip = "Path of bitmap editing tool to use when editing the subpic by hand.";
  toolPath_ = new QLineEdit(this);
  auto* const browse = new QPushButton(".", this);
  NameControl(*browse, "browseTool", "Browse for the bitmap editing tool", toolTip);
  browse->setAutoDefault(false);
  browse->setFixedWidth(browse->sizeHint().height());
  connect(browse, &QPushButton::clicked, this, &PreferencesDialog::Browse);
  NameControl(*toolPath_, "toolPath", "Tool path", toolTip);
  toolPath_->setMaxLength(kLongestText);
  auto* const both = new QWidget(this);
  auto* const layout = new QHBoxLayout(both);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(toolPath_, 1);
  layout->addWidget(browse);
  return both;
}

int PreferencesDialog::exec() {
  backgroundAtOpening_ = preferences_.backgroundColour;
  FillControls();
  return QDialog::exec();
}

void PreferencesDialog::FillControls() {
  for (const auto& [box, field] : checks_) box->setChecked(preferences_.*field != 0);
  for (const auto& [box, field] : choices_) {
    const int index = preferences_.*field;
    box->setCurrentIndex(index >= 0 && index < box->count() ? index : -1);
  }
  for (const auto& [edit, field] : numbers_) edit->setText(QString::number(preferences_.*field));
  range_->setText(QString::number(preferences_.retimingSliderRange));
  toolPath_->setText(QString::fromStdString(preferences_.bitmapToolPath));
  toolArguments_->setText(QString::fromStdString(preferences_.bitmapToolArguments));
  SetBackground(preferences_.backgroundColour);
}

// What is no number, or no entry of its list, leaves the preference as it was.
void PreferencesDialog::TakeControls() {
  for (const auto& [box, field] : checks_) preferences_.*field = box->isChecked() ? 1 : 0;
  for (const auto& [box, field] : choices_) {
    if (box->currentIndex() >= 0) preferences_.*field = box->currentIndex();
  }
  bool isNumber = false;
  for (const auto& [edit, field] : numbers_) {
    const int number = edit->text().toInt(&isNumber);
    if (isNumber) preferences_.*field = number;
  }
  const float range = range_->text().toFloat(&isNumber);
  if (isNumber) preferences_.retimingSliderRange = range;
  preferences_.bitmapToolPath = toolPath_->text().toStdString();
  preferences_.bitmapToolArguments = toolArguments_->text().toStdString();
}

void PreferencesDialog::accept() {
  TakeControls();
  const std::string& tool = preferences_.bitmapToolPath;
  if (!tool.empty() && !session_.files.Exists(tool) && !session_.files.IsFolder(tool)) {
    session_.reporter.ReportError(
        "The path you've indicated for the bitmap edit tool does not exist.\n"
        "Leave it empty or set it to an existing app");
    return;
  }
  QDialog::accept();
}

void PreferencesDialog::reject() {
  SetBackground(backgroundAtOpening_);
  QDialog::reject();
}

void PreferencesDialog::Browse() {
  const std::string current = toolPath_->text().toStdString();
  const auto paths =
      frontEnd_.ChooseFiles({"Select bitmap (.BMP) editing tool", "bmp Files (*.exe)|*.exe||",
                             SplitPath(current).folder, current});
  if (!paths.empty()) toolPath_->setText(QString::fromStdString(paths.front()));
}

void PreferencesDialog::PickBackground() {
  const ColourBytes now = SplitColour(preferences_.backgroundColour);
  const auto chosen =
      frontEnd_.ChooseColour("Default video background color", Rgb{now.red, now.green, now.blue});
  if (chosen) SetBackground(chosen->r | chosen->g << 8 | chosen->b << 16);
}

// The swatch and the main window show a colour as soon as it is chosen.
void PreferencesDialog::SetBackground(std::int32_t colour) {
  const bool isNew = colour != preferences_.backgroundColour;
  preferences_.backgroundColour = colour;
  const ColourBytes bytes = SplitColour(colour);
  const QColor shown(bytes.red, bytes.green, bytes.blue);
  background_->SetColour(shown);
  background_->setAccessibleDescription(shown.name());
  if (isNew) emit BackgroundChanged();
}

}  // namespace quillomar
