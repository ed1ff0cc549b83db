// A Qt window with nothing in it, or with one line of text, to measure the least that the start of an application
// costs: empty_window [TEXT].

#include <cstdio>

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QWidget>

#include "hearing-app/FirstFrame.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(375, 667);
  if (argc > 1) new QLabel(QString::fromUtf8(argv[1]), &window);
  window.show();
  orn::afterFirstFrame(window, [] {
    std::puts("frame");
    std::fflush(stdout);
    QApplication::quit();
  });
  return QApplication::exec();
}
