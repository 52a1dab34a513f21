// A window from which files can be dragged: press the mouse in it, and it drags what it was named.
// usage: drag_source FILE...

#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

namespace {

class DragSource final : public QWidget {
 protected:
  void mousePressEvent(QMouseEvent* /*event*/) override {
    QList<QUrl> urls;
    for (const QString& path : QApplication::arguments().mid(1)) {
      urls << QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    }
    auto* const files = new QMimeData;
    files->setUrls(urls);
    // Qt deletes it once the other window has fetched the files.
    auto* const drag = new QDrag(this);
    drag->setMimeData(files);
    (void)drag->exec(Qt::CopyAction);
  }
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  DragSource source;
  source.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
  source.setWindowTitle("drag source");
  source.setGeometry(0, 0, 60, 40);
  source.show();
  return QApplication::exec();
}
