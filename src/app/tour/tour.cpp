#include "app/tour/tour.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QTabWidget>
#include <QTimer>
#include <iostream>

namespace tarnlink {

Tour::Tour(Program& program, QString screen, QString pictures)
    : program_(program), screen_(std::move(screen)), pictures_(std::move(pictures)) {
  constexpr int kSecond = 1000;
  constexpr int kSecondsOfValues = 10;
  stops_.push_back({0, [this] { program_.Start(screen_.toStdString()); }});
  stops_.push_back({500, [this] {
                      values_.Note(program_.monitor().main);
                      Picture("1-stopped");
                    }});
  stops_.push_back({100, [this] { Press("Toolbar1(2)"); }});
  for (int i = 0; i < kSecondsOfValues; ++i) {
    stops_.push_back({kSecond, [this] { values_.Note(program_.monitor().main); }});
  }
  stops_.push_back({100, [this] { Picture("2-running"); }});
  stops_.push_back({100, [this] { Press("Toolbar1(3)"); }});
  stops_.push_back({500, [this] { Press("M_options"); }});
  stops_.push_back({300, [this] { PictureOfOptions(0, "3-options-communication"); }});
  stops_.push_back({300, [this] { PictureOfOptions(1, "4-options-files"); }});
  stops_.push_back({300, [this] { PictureOfOptions(2, "5-options-monitor"); }});
  stops_.push_back({100, [] { QApplication::activeModalWidget()->close(); }});
  stops_.push_back({300, [this] { Press("M_About"); }});
  stops_.push_back({300, [this] { Picture("6-about"); }});
  stops_.push_back({100, [] { QApplication::activeModalWidget()->close(); }});
  stops_.push_back({300, [this] { Press("mnuPrint"); }});
  stops_.push_back({500, [this] { Picture("7-print-preview"); }});
  stops_.push_back({100, [] { QApplication::activeModalWidget()->close(); }});
  stops_.push_back({300, [this] { Finish(); }});
}

void Tour::Begin() {
  constexpr int kLookAgain = 250;  // ms
  connect(&box_watch_, &QTimer::timeout, this, [this] { CloseMessageBox(); });
  box_watch_.start(kLookAgain);
  Next();
}

// Nobody is there to read a box: it is printed, and the tour goes on.
void Tour::CloseMessageBox() {
  auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (box == nullptr) return;
  std::cout << "Box: " << box->windowTitle().toStdString() << ": " << box->text().toStdString()
            << ' ' << box->informativeText().toStdString() << std::endl;
  box_came_ = true;
  box->close();
}

void Tour::Next() {
  if (next_ == stops_.size()) return;
  QTimer::singleShot(stops_[next_].milliseconds, this, [this] {
    const Stop& stop = stops_[next_];
    ++next_;
    // First the next stop, since this one may open a box and only come back when it closes.
    Next();
    stop.act();
  });
}

void Tour::Press(const char* action) {
  auto* found = program_.window().findChild<QAction*>(action);
  std::cout << "Press: " << found->text().remove('&').toStdString() << std::endl;
  found->trigger();
}

void Tour::Picture(const char* name) {
  QWidget* shown = QApplication::activeModalWidget();
  if (shown == nullptr) shown = &program_.window();
  const QString file = pictures_ + "/" + name + ".png";
  if (!shown->grab().save(file)) std::cerr << "No picture: " << file.toStdString() << std::endl;
}

void Tour::PictureOfOptions(int tab, const char* name) {
  QApplication::activeModalWidget()->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(tab);
  Picture(name);
}

void Tour::Finish() {
  std::cout << "Values of " << screen_.toStdString() << ":\n";
  values_.Print(std::cout);
  std::cout << values_.live() << " Locations showed values, " << values_.changing()
            << " of them changed.\nPictures: " << pictures_.toStdString() << std::endl;
  QApplication::exit(values_.live() > 0 && values_.changing() > 0 && !box_came_ ? 0 : 1);
}

}  // namespace tarnlink
