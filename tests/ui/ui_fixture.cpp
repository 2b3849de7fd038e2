#include "ui/ui_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QMessageBox>
#include <QPainter>
#include <QRadioButton>
#include <QToolBar>
#include <algorithm>

#include "ui/on_demand.h"
#include "ui/paint_count.h"
#include "ui/text_plate.h"

namespace tarnlink {

namespace {

constexpr const char* kScreenFile = "/home/user/work/boiler.wcr";

}  // namespace

std::string ScreenOf(int count) {
  constexpr int kRows = 24;
  constexpr int kRowHeight = 330;     // units
  constexpr int kColumnWidth = 4500;  // units
  std::string text = "16744576\r\n";
  for (int i = 0; i < count; ++i) {
    const std::string top = std::to_string(120 + i % kRows * kRowHeight);
    const int left = 240 + i / kRows * kColumnWidth;
    text += "\"L\",0,1,\"01A0\",0,\"Name " + std::to_string(i + 1) + "\",\"v\",0,0,0,0,\"0\",0," +
            top + "," + std::to_string(left + 2160) + "," + top + "," + std::to_string(left) +
            ",\"0\"\r\n";
  }
  return text;
}

UiTest::~UiTest() {
  auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  if (box == nullptr) return;
  ADD_FAILURE() << box->text().toStdString();
  box->close();
}

void UiTest::Begin() {
  window = std::make_unique<MainWindow>(monitor.main);
  MakeOnDemand(monitor.options.form, [this] {
    options = std::make_unique<OptionsDialog>(monitor.options, world.devices(), window.get());
  });
  MakeOnDemand(monitor.about.form,
               [this] { about = std::make_unique<AboutDialog>(monitor.about, window.get()); });
  MakeOnDemand(monitor.settings.form, [this] {
    settings = std::make_unique<SettingsDialog>(monitor.settings, window.get());
  });
  MakeOnDemand(monitor.write_value.form, [this] {
    write_value = std::make_unique<WriteValueDialog>(monitor.write_value, window.get());
  });
  MakeOnDemand(monitor.write_bit.form, [this] {
    write_bit = std::make_unique<WriteBitDialog>(monitor.write_bit, window.get());
  });
  MakeOnDemand(monitor.write_registers.form, [this] {
    write_registers =
        std::make_unique<MultipleRegistersDialog>(monitor.write_registers, write_value.get());
  });
  monitor.main.Unload = [this] { window->LetGo(); };
  monitor.start.Form_Load();
  window->ShowPlace();
  window->show();
  WaitForActive(window.get());
}

void UiTest::WaitForActive(QWidget* wanted) {
  // What a window manager does when a window comes up, or is left by the one above it.
  wanted->activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == wanted; }, 2000));
}

void UiTest::OpenScreen(const std::string& text) {
  BeginOnce();
  world.disk().Put(kScreenFile, text);
  world.dialogs().ExpectOpenFile("Open").Give(kScreenFile);
  Entry("M_fileopen").trigger();
}

void UiTest::OpenOptions() {
  BeginOnce();
  WaitForActive(window.get());
  Entry("M_options").trigger();
  WaitForActive(options.get());
}

void UiTest::Click(const std::string& name) {
  QWidget* target = Find(name);
  if (target == nullptr) target = Get<QToolBar>("Toolbar1").widgetForAction(&Entry(name));
  // The caption of a button in a wide frame takes a click as far as it goes, not beyond.
  const bool starts_left =
      qobject_cast<QRadioButton*>(target) != nullptr || qobject_cast<QCheckBox*>(target) != nullptr;
  const int x = starts_left ? std::min(8, target->width() / 2) : target->width() / 2;
  QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(x, target->height() / 2));
}

void UiTest::Press(const std::string& name, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(&Get(name), key, modifiers);
}

void UiTest::Type(const std::string& name, const std::string& text) {
  auto& edit = Get(name);
  edit.setFocus();
  QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&edit, Qt::Key_Delete);
  QTest::keyClicks(&edit, QString::fromStdString(text));
}

std::string UiTest::Focus() const {
  const QWidget* focused = QApplication::focusWidget();
  if (focused == nullptr) return "nothing";
  const std::string name = focused->objectName().toStdString();
  return name.empty() ? std::string("[") + focused->metaObject()->className() + "]" : name;
}

void UiTest::PressFocused(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void UiTest::SlaveAnswers(const std::string& digits) {
  world.on_output = [digits](FakeSerialPort& port, std::string_view request) {
    constexpr char kReadByte = 0x05;
    const std::string data = request[1] == kReadByte ? digits.substr(0, 2) : digits;
    port.ReceiveIn(std::chrono::milliseconds(5),
                   std::string(request.substr(0, 6)) + data + "00\x03");
  };
}

void UiTest::FinishPainting() {
  // A text that comes last is painted last.
  StatusPanel& panel = monitor.main.StatusBar1(6);
  const std::string text = panel.Text;
  for (const std::string& shown : {text + ".", text}) {
    PaintCount paints;
    // One of a text of before may still be to come.
    paints.Counts = [&] { return Get<TextPlate>(panel.name()).text().toStdString() == shown; };
    panel.Text = shown;
    ASSERT_TRUE(QTest::qWaitFor([&] { return paints.Of(panel.name()) > 0; }, 2000));
  }
}

void SavePicture(QWidget& widget, const std::string& name, QWidget* above) {
  QPixmap picture = widget.grab();
  if (above != nullptr) {
    const QPixmap box = above->grab();
    const qreal ratio = picture.devicePixelRatio();
    const QPoint centre = QRectF(QPointF(), picture.size() / ratio).center().toPoint();
    QPainter painter(&picture);
    painter.drawPixmap(centre - above->rect().center(), box);
  }
  const QString density = QString::number(qRound(qApp->devicePixelRatio() * 100));
  QDir().mkpath(UI_PICTURES);
  const QString file = QString(UI_PICTURES) + "/" + QString::fromStdString(name) + "-" + density;
  EXPECT_TRUE(picture.save(file + ".png")) << file.toStdString();
}

}  // namespace tarnlink
