// The least that a program with a window can be: what bench_startup measures against.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.resize(960, 640);
  window.show();
  return QApplication::exec();
}
