// The other side of the start-up's measurement: the least that a program with a frame is which
// shows a text.
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenuBar>
#include <QStatusBar>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.setCentralWidget(new QMdiArea);
  window.menuBar()->addMenu(QStringLiteral("&File"));
  window.statusBar()->showMessage(QStringLiteral("Ready"));
  window.resize(900, 600);
  window.show();
  return QApplication::exec();
}
