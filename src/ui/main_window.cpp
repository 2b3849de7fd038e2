#include "ui/main_window.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/icons.h"
#include "ui/main_menu.h"
#include "ui/mnemonics.h"
#include "ui/text_plate.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr QSize kSmallestWindow(800, 480);
constexpr int kNoticeMargin = 3;    // pixels
constexpr int kProjectWidth = 171;  // pixels: 2565 units

// A stored place may belong to a monitor that is gone: enough of the window must be in sight to
// take hold of it.
QPoint InSight(const QRect& window) {
  constexpr int kHold = 48;
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry().intersected(window);
    if (seen.width() >= kHold && seen.height() >= kHold) return window.topLeft();
  }
  return QGuiApplication::primaryScreen()->availableGeometry().topLeft();
}

}  // namespace

MainWindow::MainWindow(frm_Main& main)
    : main_(main),
      project_(new ProjectWindow(main)),
      screen_(new ScreenSurface(main)),
      scroll_(new QScrollArea) {
  setObjectName(ToQt(main_.form.name()));
  setMinimumSize(kSmallestWindow);
  setContextMenuPolicy(Qt::NoContextMenu);
  setAcceptDrops(true);
  BuildMainMenu(menuBar(), main_, BuildToolBar());
  BuildStatusBar();

  scroll_->setWidget(screen_);
  scroll_->setWidgetResizable(true);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);  // the screen in it takes the keyboard
  auto* splitter = new QSplitter;
  splitter->addWidget(project_);
  splitter->addWidget(scroll_);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({kProjectWidth, width()});
  auto* middle = new QWidget;
  auto* layout = new QVBoxLayout(middle);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(splitter, 1);
  for (Label* notice : {&main_.lbl_MapNotice, &main_.lbl_IdNotice}) {
    auto* line = new QLabel;
    line->setTextFormat(Qt::PlainText);
    line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // a long one is cut
    line->setMargin(kNoticeMargin);
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Bind(line, *notice);
    layout->addWidget(line);
  }
  setCentralWidget(middle);

  main_.form.SetView([this] { ShowForm(); });
  ShowForm();
}

MainWindow::~MainWindow() { main_.form.SetView({}); }

QList<QAction*> MainWindow::BuildToolBar() {
  QToolBar* bar = addToolBar(tr("Tool bar"));
  bar->setObjectName("Toolbar1");
  bar->setMovable(false);
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  for (int i = main_.Toolbar1.first(); i <= main_.Toolbar1.last(); ++i) {
    QAction* action = bar->addAction(QString());
    Bind(action, main_.Toolbar1(i));
  }
  const QList<QAction*> actions = bar->actions();
  for (const int button : {1, 4, 6}) actions[button - 1]->setAutoRepeat(false);
  actions[0]->setShortcut(Qt::CTRL | Qt::Key_L);
  actions[3]->setShortcut(Qt::CTRL | Qt::Key_T);
  actions[5]->setShortcut(Qt::CTRL | Qt::Key_R);
  actions[1]->setIcon(StartIcon());
  actions[1]->setShortcut(Qt::Key_F5);
  actions[2]->setIcon(StopIcon());
  actions[2]->setShortcut(Qt::SHIFT | Qt::Key_F5);
  return actions;
}

// Each panel has room for its longest text; the fifth, which holds a name, takes what is left.
void MainWindow::BuildStatusBar() {
  constexpr int kFrame = 14;  // pixels: frame and inner margin of a panel
  const QStringList longest = {
      "COM16, 38400,N,8, 2",    "Locations : 512", "TarnLink Protocol", "Communication Running", "",
      "Local Connection Active"};
  statusBar()->setObjectName("StatusBar1");
  statusBar()->setSizeGripEnabled(false);
  auto* whole = new QWidget;
  below_ = new QVBoxLayout(whole);
  below_->setContentsMargins(0, 0, 0, 0);
  auto* panels = new QHBoxLayout;
  below_->addLayout(panels);
  statusBar()->addWidget(whole, 1);
  for (int i = main_.StatusBar1.first(); i <= main_.StatusBar1.last(); ++i) {
    auto* panel = new TextPlate;
    panel->setSizePolicy(i == kLocationPanel ? QSizePolicy::Ignored : QSizePolicy::Fixed,
                         QSizePolicy::Preferred);
    if (i != kLocationPanel) {
      panel->setFixedWidth(panel->fontMetrics().horizontalAdvance(longest[i - 1]) + kFrame);
    }
    Bind(panel, main_.StatusBar1(i));
    panels->addWidget(panel, i == kLocationPanel ? 1 : 0);
  }
}

void MainWindow::AddBelowStatusBar(QWidget* widget) {
  below_->addWidget(widget);
  GiveMnemonics(this);
}

void MainWindow::ShowForm() {
  const QString title = ToQt(main_.form.Caption.get());
  if (windowTitle() != title) setWindowTitle(title);
  if (screen_->updatesEnabled() != main_.form.Painting) {
    screen_->setUpdatesEnabled(main_.form.Painting);
  }
  if (main_.form.BackColor.get() != shown_colour_) {
    shown_colour_ = main_.form.BackColor;
    screen_->ShowColour();
  }
}

void MainWindow::ShowPlace() {
  GiveMnemonics(this);  // all parts of it are there by now
  placing_ = true;
  const QSize size(ToPixels(main_.form.Width), ToPixels(main_.form.Height));
  resize(size.expandedTo(kSmallestWindow));
  const QPoint corner(ToPixels(main_.form.Left), ToPixels(main_.form.Top));
  move(InSight(QRect(corner, this->size())));
  placing_ = false;
}

void MainWindow::ReportPlace() {
  if (placing_ || !isVisible() || isMinimized() || isMaximized()) return;
  main_.form.Left = ToUnits(x());
  main_.form.Top = ToUnits(y());
  main_.form.Width = ToUnits(width());
  main_.form.Height = ToUnits(height());
}

void MainWindow::LetGo() {
  left_ = true;
  close();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!left_) main_.M_exit.Press();
  event->setAccepted(left_);
}

void MainWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  ReportPlace();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  ReportPlace();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange) return;
  main_.form.State = isMinimized()   ? WindowState::kMinimized
                     : isMaximized() ? WindowState::kMaximized
                                     : WindowState::kNormal;
}

// --- A file from the desktop ---------------------------------------------------------------------

// One file is taken, several are not.
void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> files = event->mimeData()->urls();
  if (files.size() != 1 || !files.first().isLocalFile()) return;
  // Never a move: whoever the file comes from would delete it.
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QList<QUrl> files = event->mimeData()->urls();
  if (files.size() != 1 || !files.first().isLocalFile()) return;
  event->setDropAction(Qt::CopyAction);
  event->accept();
  // After the drop, so that a question does not hold the program that the file comes from.
  const std::string path = FromQt(files.first().toLocalFile());
  QTimer::singleShot(0, this, [this, path] {
    if (main_.form.FileDropped) main_.form.FileDropped(path);
  });
}

}  // namespace tarnlink
