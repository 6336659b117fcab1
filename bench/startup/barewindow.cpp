// The floor of every start: a main window with an area for children and six menus, nothing else.
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenuBar>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.setCentralWidget(new QMdiArea);
  for (int i = 0; i < 6; ++i) {
    QMenu* menu = window.menuBar()->addMenu(QStringLiteral("Menu %1").arg(i));
    for (int item = 0; item < 8; ++item) menu->addAction(QStringLiteral("Item %1").arg(item));
  }
  window.resize(1120, 720);
  window.showMaximized();
  return QApplication::exec();
}
