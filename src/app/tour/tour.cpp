#include "app/tour/tour.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <iostream>

namespace tarnlink {

Tour::Tour(Program& program, const QString& project, const QStringList& screens, QString pictures)
    : program_(program), pictures_(std::move(pictures)) {
  for (const QString& screen : screens) visits_.push_back({screen, {}});
  // The first one is named on the command line, the others are opened from the menu.
  Then(0, [this, project] {
    program_.Start({project.toStdString(), visits_.front().screen.toStdString()});
  });
  for (Visit& visit : visits_) {
    PlanVisit(visit);
    if (&visit == &visits_.front()) PlanGraph();
  }
  PlanDialogs();
  Then(300, [this] { Finish(); });
}

void Tour::Then(int milliseconds, std::function<void()> act) {
  stops_.push_back({milliseconds, std::move(act)});
}

void Tour::PlanVisit(Visit& visit) {
  constexpr int kSecond = 1000;
  constexpr int kSecondsOfValues = 7;
  if (&visit != &visits_.front()) {
    OpenProjectOf(visit.screen);
    Then(300, [this] { Press("M_fileopen"); });
    Then(500, [this, &visit] { ChooseFile(visit.screen); });
  }
  const QString name = QFileInfo(visit.screen).completeBaseName();
  Then(500, [this, &visit, name] {
    ExpectOpen(visit.screen);
    visit.values.Note(program_.monitor().main);
    Picture(name + "-stopped");
  });
  Then(100, [this] { program_.monitor().main.RAM_LOC_TEXT.DblClick(1); });
  Then(300, [this, name] {
    Picture(name + "-settings");
    program_.monitor().settings.cmd_Cancel.Press();
  });
  Then(100, [this] { Press("Toolbar1(2)"); });
  for (int i = 0; i < kSecondsOfValues; ++i) {
    Then(kSecond, [this, &visit] { visit.values.Note(program_.monitor().main); });
  }
  Then(100, [this, name] { Picture(name + "-running"); });
  Then(100, [this] { Press("Toolbar1(3)"); });
}

// The project that stands beside a screen under the same name.
void Tour::OpenProjectOf(const QString& screen) {
  const QFileInfo file(screen);
  const QString project = file.dir().filePath(file.completeBaseName() + ".prj");
  if (!QFileInfo::exists(project)) return;
  Then(300, [this] { Press("mnuOpenProject"); });
  Then(500, [this, project] { ChooseFile(project); });
}

// Lines of a file are recorded for a while; then a recording is opened, and its page is shown.
void Tour::PlanGraph() {
  constexpr int kRecording = 9000;  // ms
  const QDir folder = QFileInfo(visits_.front().screen).dir();
  const auto close = [] { QApplication::activeModalWidget()->close(); };
  Then(500, [this] { Press("M_Graphics"); });
  Then(500, [this] { Press("mnuOpenProperties"); });
  Then(500, [this, folder] { ChooseFile(folder.filePath("burner.grp")); });
  Then(kRecording, [this] { Picture("graph-recording"); });
  Then(100, [this] { Press("mnuGraphSettings"); });
  Then(500, [this] { Picture("graph-settings"); });
  Then(100, close);
  Then(100, [this] { Press("mnuOpenMeasure"); });
  Then(500, [this, folder] { ChooseFile(folder.filePath("burner_start.mss")); });
  Then(500, [this] { Picture("graph-opened"); });
  Then(100, [this] { Press("mnuPrint"); });
  Then(300, [] { dynamic_cast<QDialog*>(QApplication::activeModalWidget())->accept(); });
  Then(500, [this] { Picture("graph-page"); });
  Then(100, close);
  Then(100, close);
}

void Tour::PlanDialogs() {
  const auto close = [] { QApplication::activeModalWidget()->close(); };
  Then(500, [this] { Press("M_options"); });
  Then(300, [this] { PictureOfOptions(0, "options-communication"); });
  Then(300, [this] { PictureOfOptions(1, "options-files"); });
  Then(300, [this] { PictureOfOptions(2, "options-monitor"); });
  Then(100, close);
  Then(300, [this] { Press("M_About"); });
  Then(300, [this] { Picture("about"); });
  Then(100, close);
  Then(300, [this] { Press("mnuPrint"); });
  Then(500, [this] { Picture("print-preview"); });
  Then(100, close);
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
  is_well_ = false;
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
  const QWidget* above = QApplication::activeModalWidget();
  auto* found = above != nullptr ? above->findChild<QAction*>(action) : nullptr;
  if (found == nullptr) found = program_.window().findChild<QAction*>(action);
  std::cout << "Press: " << found->text().remove('&').toStdString() << std::endl;
  found->trigger();
}

void Tour::ChooseFile(const QString& path) {
  auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
  if (dialog == nullptr) {
    std::cerr << "No dialog asks for a file." << std::endl;
    is_well_ = false;
    return;
  }
  // A relative name would count from the folder that the dialog shows.
  dialog->findChild<QLineEdit*>()->setText(QFileInfo(path).absoluteFilePath());
  dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
}

void Tour::ExpectOpen(const QString& screen) {
  const QFileInfo open(QString::fromStdString(program_.monitor().main.CurrentTarnLinkFile));
  if (open == QFileInfo(screen)) return;
  std::cerr << "The screen is not open: " << screen.toStdString() << std::endl;
  is_well_ = false;
}

void Tour::Picture(const QString& what) {
  QWidget* shown = QApplication::activeModalWidget();
  if (shown == nullptr) shown = &program_.window();
  const QString file = QString("%1/%2-%3.png").arg(pictures_).arg(++pictures_taken_).arg(what);
  if (!shown->grab().save(file)) std::cerr << "No picture: " << file.toStdString() << std::endl;
}

void Tour::PictureOfOptions(int tab, const QString& what) {
  QApplication::activeModalWidget()->findChild<QTabWidget*>("SSTab1")->setCurrentIndex(tab);
  Picture(what);
}

void Tour::Finish() {
  for (const Visit& visit : visits_) {
    std::cout << "Values of " << visit.screen.toStdString() << ":\n";
    visit.values.Print(std::cout);
    std::cout << visit.values.live() << " Locations showed values, " << visit.values.changing()
              << " of them changed.\n";
    is_well_ = is_well_ && visit.values.live() > 0 && visit.values.changing() > 0;
  }
  std::cout << "Pictures: " << pictures_.toStdString() << std::endl;
  QApplication::exit(is_well_ ? 0 : 1);
}

}  // namespace tarnlink
