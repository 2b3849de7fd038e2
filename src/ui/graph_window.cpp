#include "ui/graph_window.h"

#include <QBuffer>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/click_label.h"
#include "ui/label_panel.h"
#include "ui/mnemonics.h"
#include "ui/mouse_button.h"
#include "ui/palette.h"
#include "ui/remembered_place.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr QSize kSmallestWindow(760, 500);
constexpr QSize kUsualWindow(1180, 760);
constexpr double kLargestShare = 0.9;  // of the screen that a new window takes
constexpr int kOverhang = 24;          // pixels: half a time label beside the picture
constexpr int kCaptionOverhang = 3;    // pixels: as far as there is nothing beside the captions
constexpr int kIndent = 3;             // pixels before a text
constexpr int kMessageTop = 24;        // pixels from the top of the picture
constexpr int kHintTop = 70;           // the same

std::vector<Label*> LabelsOf(FixedArray<Label>& array) {
  std::vector<Label*> labels;
  for (int i = array.first(); i <= array.last(); ++i) labels.push_back(&array(i));
  return labels;
}

// How high the letters of all labels are, and how wide those that need a width.
void MeasureLabels(frmGraphic& form) {
  const QFontMetrics metrics(GraphFont());
  const float height = ToUnits(metrics.height());
  const auto measure = [&](FixedArray<Label>& array, const QString& longest) {
    for (int i = array.first(); i <= array.last(); ++i) {
      array(i).Height = height;
      if (!longest.isEmpty()) array(i).Width = ToUnits(metrics.horizontalAdvance(longest));
    }
  };
  measure(form.lblVal, {});
  measure(form.lblX, "00:00:00");
  for (FixedArray<Label>* scale : {&form.lblYL, &form.lblYR}) {
    measure(*scale, {});
    for (int i = 1; i <= scale->last(); ++i) (*scale)(i).Width = (*scale)(0).Width;
  }
  form.lblDate.Height = height;
}

}  // namespace

GraphWindow::GraphWindow(Graph& graph, QWidget* parent)
    : QDialog(parent, Qt::Window | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
      graph_(graph),
      form_(graph.graph),
      menu_(new QMenu(this)) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  setMinimumSize(kSmallestWindow);
  MeasureLabels(form_);
  canvas_ = new GraphCanvas(graph_, this);
  BuildPanels();
  BuildLabels();
  BuildMenu();
  graph_.display.ShowContextMenu = [this] { ShowMenu(); };
  graph_.picture.CopyPicture = [this] { QGuiApplication::clipboard()->setImage(Picture()); };
  graph_.picture.PngBytes = [this] {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    Picture().save(&buffer, "PNG");
    return bytes.toStdString();
  };
  form_.form.SetView([this] { ShowForm(); });
  resize(kUsualWindow.boundedTo(screen()->availableSize() * kLargestShare));
  RememberPlace(this, form_.platform().settings());
  ShowForm();
}

GraphWindow::~GraphWindow() {
  form_.form.SetView({});
  form_.lblCommunicationError.SetView({});
  form_.lblDate.SetView({});
  form_.lblNoLine.SetView({});
  graph_.display.ShowContextMenu = {};
  graph_.picture.CopyPicture = {};
  graph_.picture.PngBytes = {};
}

// --- What it is made of --------------------------------------------------------------------------

void GraphWindow::BuildPanels() {
  const auto build = [this](int i, FixedArray<Label>& labels, Qt::Alignment alignment,
                            int overhang) {
    auto* panel = new LabelPanel(form_.frm(i), LabelsOf(labels), alignment, this, overhang);
    panel->Down = [this, i](MouseButton button) { graph_.display.PanelMouseDown(i, button); };
    return panel;
  };
  build(0, form_.lblVal, Qt::AlignLeft, kCaptionOverhang)->Drop = [this](std::size_t label) {
    const std::size_t row = label / kLabelsOfRow;
    return row < form_.CaptionDrop.size() ? form_.CaptionDrop[row] : 0;
  };
  build(1, form_.lblX, Qt::AlignHCenter, kOverhang);
  build(2, form_.lblYL, Qt::AlignRight, 0);
  build(3, form_.lblYR, Qt::AlignLeft, 0);
}

void GraphWindow::BuildLabels() {
  exit_ = new ClickLabel(form_.lblExit, this);
  exit_->Click = [this] { graph_.form.Unload(); };
  test_ = new ClickLabel(form_.lblTest, this);
  test_->Down = [this](MouseButton button) { graph_.acquisition.TestMouseDown(button); };
  test_->Up = [this](MouseButton) { graph_.acquisition.TestMouseUp(); };
  date_ = new QLabel(this);
  date_->setObjectName(ToQt(form_.lblDate.name()));
  date_->setTextFormat(Qt::PlainText);
  date_->setFont(GraphFont());
  date_->setIndent(kIndent);
  form_.lblDate.SetView([this] { ShowDate(); });
  scroll_ = new QScrollBar(Qt::Horizontal, this);
  Bind(scroll_, form_.HScroll1);
  message_ = AddPlate(form_.lblCommunicationError);
  form_.lblCommunicationError.SetView([this] { ShowMessage(); });
  hint_ = AddPlate(form_.lblNoLine);
  form_.lblNoLine.SetView([this] { ShowHint(); });
  ShowDate();
  ShowMessage();
  ShowHint();
}

QLabel* GraphWindow::AddPlate(const Label& label) {
  auto* plate = new QLabel(this);
  plate->setObjectName(ToQt(label.name()));
  plate->setTextFormat(Qt::PlainText);
  plate->setFont(GraphFont());
  plate->setMargin(kIndent);
  plate->setFrameShape(QFrame::Box);
  plate->setAutoFillBackground(true);
  plate->setAttribute(Qt::WA_TransparentForMouseEvents);
  return plate;
}

void GraphWindow::BuildMenu() {
  frmContextMenu& menu = graph_.menu;
  const auto add = [this](QMenu* to, MenuEntry& entry) {
    QAction* action = to->addAction(QString());
    Bind(action, entry);
    addAction(action);  // its key works while the menu is not open
    return action;
  };
  const auto add_check = [&](QMenu* to, MenuEntry& entry) {
    QAction* action = add(to, entry);
    action->setCheckable(true);
    action->setChecked(entry.Checked);
  };
  menu_->setObjectName("mnuContextMenu");
  QMenu* file = menu_->addMenu(QString());
  Bind(file->menuAction(), menu.mnuFile);
  add(file, menu.mnuSaveProperties);
  add(file, menu.mnuOpenProperties);
  file->addSeparator();
  add(file, menu.mnuSaveMeasure)->setShortcut(QKeySequence::Save);
  add(file, menu.mnuOpenMeasure)->setShortcut(QKeySequence::Open);
  file->addSeparator();
  add(file, menu.mnuExport);
  add_check(file, menu.mnuAutoSave);
  add(menu_, menu.mnuGraphSettings);
  menu_->addSeparator();
  add_check(menu_, menu.mnuZOLTCom);
  QMenu* scale = menu_->addMenu(QString());
  Bind(scale->menuAction(), menu.mnuTimeScale);
  for (int i = 0; i < kTimeScales; ++i) add_check(scale, menu.mnuScale(i));
  add_check(menu_, menu.mnuTimeScroll);
  add_check(menu_, menu.mnuMeasOnly);
  menu_->addSeparator();
  add(menu_, menu.mnuCopyPicture)->setShortcut(QKeySequence::Copy);
  add(menu_, menu.mnuSavePicture);
  add(menu_, menu.mnuPrint)->setShortcut(QKeySequence::Print);
  menu_->addSeparator();
  add(menu_, menu.mnuExit);
  for (QMenu* one : {menu_, file, scale}) KeepMnemonics(one);
}

// --- What it shows -------------------------------------------------------------------------------

void GraphWindow::ShowForm() {
  SetColours(this, ToQColor(form_.form.BackColor), palette().color(QPalette::WindowText));
  ShowPointer();
  if (form_.form.Visible == isVisible()) return;
  setVisible(form_.form.Visible);
  if (form_.form.Visible) canvas_->setFocus();
}

// Over all windows: that of the page stands above this one.
void GraphWindow::ShowPointer() {
  const bool is_waiting = form_.form.MousePointer == kHourglass;
  if (is_waiting == is_waiting_) return;
  is_waiting_ = is_waiting;
  if (is_waiting) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QGuiApplication::restoreOverrideCursor();
  }
}

void GraphWindow::ShowDate() {
  const Label& date = form_.lblDate;
  SetColours(date_, ToQColor(date.BackColor), ToQColor(date.ForeColor));
  date_->setText(ToQt(date.Caption.get()));
  date_->setToolTip(PlainToolTip(date.ToolTipText));
  date_->setGeometry(ToPixels(date.Left), ToPixels(date.Top), ToPixels(form_.GraphPan.Left),
                     ToPixels(date.Height));
}

void GraphWindow::ShowMessage() {
  const QColor paper(255, 243, 205);
  const QColor ink(150, 0, 0);
  SetColours(message_, paper, ink);
  ShowPlate(message_, form_.lblCommunicationError, kMessageTop);
}

void GraphWindow::ShowHint() {
  SetColours(hint_, palette().color(QPalette::ToolTipBase), palette().color(QPalette::ToolTipText));
  ShowPlate(hint_, form_.lblNoLine, kHintTop);
}

void GraphWindow::ShowPlate(QLabel* plate, const Label& label, int top) {
  plate->setText(ToQt(label.Caption.get()));
  plate->adjustSize();
  const QRect picture = PlaceOf(form_.GraphPan);
  plate->move(picture.center().x() - plate->width() / 2, picture.top() + top);
  plate->setVisible(label.Visible);
  plate->raise();
}

void GraphWindow::ShowMenu() {
  const QRect picture(canvas_->mapToGlobal(QPoint(0, 0)), canvas_->size());
  const QPoint pointer = QCursor::pos();
  menu_->popup(rect().contains(mapFromGlobal(pointer)) ? pointer : picture.center());
}

// What is there to be pressed is not of the picture.
QImage GraphWindow::Picture() {
  canvas_->ShowPlain(true);
  QImage picture = grab().toImage();
  canvas_->ShowPlain(false);
  QPainter painter(&picture);
  for (const QWidget* part : std::initializer_list<QWidget*>{exit_, test_, scroll_}) {
    painter.fillRect(part->geometry(), ToQColor(form_.form.BackColor));
  }
  return picture;
}

// --- What the user does --------------------------------------------------------------------------

// The frame's close button is "Exit". The form may have come back: an accepted event would hide it.
void GraphWindow::closeEvent(QCloseEvent* event) {
  graph_.form.Unload();
  event->setAccepted(!graph_.form.IsLoaded());
}

void GraphWindow::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  form_.ScaleWidth = ToUnits(width());
  form_.ScaleHeight = ToUnits(height());
  graph_.display.Form_Resize();
  scroll_->setGeometry(PlaceOf(form_.HScroll1));
  ShowDate();
  ShowMessage();
  ShowHint();
}

void GraphWindow::mouseReleaseEvent(QMouseEvent* event) {
  graph_.display.FormMouseUp(ToMouseButton(*event));
}

// Escape and Enter end no measurement.
void GraphWindow::keyPressEvent(QKeyEvent* event) { event->ignore(); }

}  // namespace tarnlink
