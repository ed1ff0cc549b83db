// A Qt window with nothing in it, as the measure of what starting an application costs at the least.

#include <cstdio>

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(375, 667);
  window.show();
  QTimer::singleShot(0, &window, [&window] {
    window.repaint();
    std::puts("frame");
    std::fflush(stdout);
    QApplication::quit();
  });
  return QApplication::exec();
}
