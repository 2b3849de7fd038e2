// The least Qt program with a window.

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(800, 480);
  window.show();
  return QApplication::exec();
}
