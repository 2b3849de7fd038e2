// The language of the tests on the real widgets: the program's forms with their windows, in a world
// of fakes, and a user with mouse and keyboard.
//
//   OpenScreen(kTwoLocations);
//   Click("Toolbar1(2)");
//   EXPECT_EQ(Get<TextPlate>("StatusBar1(4)").text(), "Communication Running");
//   OpenOptions();
//   Click("opt_Protocol(2)");
//   EXPECT_TRUE(Get<QRadioButton>("opt_Baudrate(4)").isChecked());
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QTest>
#include <QWidget>
#include <memory>
#include <ostream>
#include <string>

#include "monitor/monitor.h"
#include "support/fake_world.h"
#include "ui/about_dialog.h"
#include "ui/main_window.h"
#include "ui/multiple_registers_dialog.h"
#include "ui/options_dialog.h"
#include "ui/settings_dialog.h"
#include "ui/write_bit_dialog.h"
#include "ui/write_value_dialog.h"

// What a failed comparison says.
inline void PrintTo(const QPoint& place, std::ostream* out) {
  *out << place.x() << ", " << place.y();
}
inline void PrintTo(const QSize& size, std::ostream* out) {
  *out << size.width() << " x " << size.height();
}
inline void PrintTo(const QRect& place, std::ostream* out) {
  PrintTo(place.size(), out);
  *out << " at ";
  PrintTo(place.topLeft(), out);
}

namespace tarnlink {

// A screen of two Locations at 01A0 and 01A2, and a label.
inline constexpr const char* kTwoLocations =
    "16744576\r\n"
    "\"L\",0,1,\"01A0\",0,\"Flow\",\"t_flow\",0,0,0,0,\"0\",0,600,2400,600,240,\"0\"\r\n"
    "\"L\",0,3,\"01A2\",0,\"Status\",\"status\",0,0,2,0,\"0\",1,1200,2400,1200,240,\"0\"\r\n"
    "\"T\",\"Boiler 1\",120,240,\"DejaVu Sans\",12,#TRUE#,#FALSE#,255\r\n";

// A screen of `count` Locations in columns.
std::string ScreenOf(int count);

class UiTest : public ::testing::Test {
 protected:
  // Fails the test if an error that no handler caught is on the display.
  ~UiTest() override;

  // Settings may be put into the world before the program begins.
  void Begin();
  void BeginOnce() {
    if (!window) Begin();
  }

  // --- The user ---

  // Opens a screen file with this text by the menu.
  void OpenScreen(const std::string& text);
  void OpenOptions();
  // Until the keyboard belongs to this window.
  void WaitForActive(QWidget* wanted);
  // A real click on a widget or a button of the tool bar.
  void Click(const std::string& name);
  void Press(const std::string& name, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
  // Replaces what stands in an edit field.
  void Type(const std::string& name, const std::string& text);
  // Where the keyboard's strokes go: the object name, in brackets the class where it has none.
  std::string Focus() const;
  void PressFocused(Qt::Key key, Qt::KeyboardModifiers modifiers = {});

  // The slave answers every poll with these two digits, four to a word.
  void SlaveAnswers(const std::string& digits);

  // Comes back when all that is to be laid out and painted has been.
  void FinishPainting();

  // --- What can be seen ---

  template <class T = QWidget>
  T& Get(const std::string& name) const {
    T* found = Find<T>(name);
    if (found == nullptr) throw std::runtime_error("There is no " + name + ".");
    return *found;
  }
  template <class T = QWidget>
  T* Find(const std::string& name) const {
    const QString wanted = QString::fromStdString(name);
    if (auto* self = qobject_cast<T*>(window.get()); self != nullptr) {
      if (self->objectName() == wanted) return self;
    }
    return window->findChild<T*>(wanted);
  }
  QAction& Entry(const std::string& name) const { return Get<QAction>(name); }
  bool Shown(const std::string& name) const { return Get(name).isVisible(); }

  FakeWorld world;
  Monitor monitor{world};
  std::unique_ptr<MainWindow> window;
  std::unique_ptr<OptionsDialog> options;
  std::unique_ptr<AboutDialog> about;
  std::unique_ptr<SettingsDialog> settings;
  std::unique_ptr<WriteValueDialog> write_value;
  std::unique_ptr<WriteBitDialog> write_bit;
  std::unique_ptr<MultipleRegistersDialog> write_registers;
};

// A picture of what a widget shows, with the box above it if there is one, for a person to look at.
// The name gets the density and the look behind it.
void SavePicture(QWidget& widget, const std::string& name, QWidget* above = nullptr);

}  // namespace tarnlink
