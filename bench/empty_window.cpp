// The least that a program with a window does: what bench/start.py compares the start with.
#include <QApplication>
#include <QMainWindow>
#include <QTimer>

namespace {

class Empty : public QMainWindow {
  protected:
    void paintEvent(QPaintEvent* event) override {
        QMainWindow::paintEvent(event);
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    }
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Empty window;
    window.resize(1280, 820);
    window.show();
    return QApplication::exec();
}
