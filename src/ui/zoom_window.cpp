#include "ui/zoom_window.h"

#include <QCloseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>
#include <array>

#include "ui/control_names.h"
#include "ui/picture_image.h"

namespace quillomar {
namespace {

constexpr std::array<int, 5> kFactors = {2, 3, 4, 6, 8};
constexpr QSize kTemplateSize(640, 320);

}  // namespace

void ZoomCanvas::Show(const QImage& picture, const QColor& background, int factor) {
  picture_ = picture;
  background_ = background;
  setFixedSize(picture.size() * factor);
  update();
}

void ZoomCanvas::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), background_);
  if (!picture_.isNull()) painter.drawImage(rect(), picture_);
}

ZoomWindow::ZoomWindow(QWidget* parent)
    : QWidget(parent, Qt::Tool), canvas_(new ZoomCanvas(this)), area_(new QScrollArea(this)) {
  NameControl(*this, "zoomWindow", "Bitmap zoom", {});
  NameControl(*area_, "zoomArea", "Enlarged subpicture", {});
  setWindowTitle("Bitmap zoom");
  setAttribute(Qt::WA_ShowWithoutActivating);
  area_->setWidget(canvas_);
  area_->setAlignment(Qt::AlignCenter);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(area_);
  resize(kTemplateSize);
}

void ZoomWindow::Show(const View& view, Rgb background) {
  if (factor_ == 0) return;
  const QImage picture = view.hasUnit ? ToImage(view.picture) : QImage();
  canvas_->Show(picture, QColor(background.r, background.g, background.b), factor_);
}

void ZoomWindow::SetFactor(int factor) {
  factor_ = factor;
  setVisible(factor > 0);
  emit Changed();
}

void ZoomWindow::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  emit Closed();
}

ZoomChooser::ZoomChooser(ZoomWindow& window, QWidget* parent) : QComboBox(parent) {
  NameControl(*this, "zoom", "Bitmap zoom window",
              "Display or hide the bitmap zoom window and select zoom factor");
  addItem("No zoom", 0);
  for (const int factor : kFactors) addItem(QString("Zoom x%1").arg(factor), factor);
  connect(this, &QComboBox::currentIndexChanged, &window,
          [this, &window] { window.SetFactor(currentData().toInt()); });
  connect(&window, &ZoomWindow::Closed, this, [this] { setCurrentIndex(0); });
}

}  // namespace quillomar
