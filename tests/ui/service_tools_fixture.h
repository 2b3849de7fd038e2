// A user's hands on the windows of the service tools, opened over the simulated boiler. Clicks and
// keys come to the window as the desktop reports them, and find their own way.
//
//   QWidget& panel = OpenPanel(0);
//   Click(panel, "cmdUpdateStatus");
//   world.Advance(5s);
//   EXPECT_NE(Text(panel, "txt_OSNumber"), "");
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWidget>
#include <QWindow>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "form/boiler_on_line.h"
#include "support/fake_world.h"
#include "ui/file_tools.h"
#include "ui/graph_fixture.h"
#include "ui/service_tools.h"
#include "ui/ui_fixture.h"

namespace tarnlink {

using namespace std::chrono_literals;

class ServiceToolsTest : public ::testing::Test {
 protected:
  // --- The windows ---

  static QWidget& Form(const std::string& name) {
    QWidget* form = FindTopLevel(name);
    if (form == nullptr) throw std::runtime_error("There is no " + name + ".");
    return *form;
  }
  static QWidget& Activated(const std::string& name) {
    QWidget& form = Form(name);
    form.activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.isActiveWindow(); }, 2000));
    return form;
  }
  QWidget& OpenPanel(int index = 0) {
    tools->GoControlPanel(index);
    return Activated("frm_ContPanel");
  }
  QWidget& OpenScan() {
    tools->ShowScanSlaves();
    return Activated("frm_ScanSlaves");
  }
  QWidget& OpenWrongMessages() {
    tools->ShowErrorGenerator();
    return Activated("frm_IPMsgErr");
  }
  // As after the program has been left and started again.
  void StartAgain() {
    tools.reset();
    file_tools.reset();
    tools.emplace(host, nullptr);
    file_tools.emplace(host, nullptr);
  }
  template <class T = QWidget>
  static T& In(QWidget& form, const std::string& name) {
    T* found = form.findChild<T*>(QString::fromStdString(name));
    if (found == nullptr) throw std::runtime_error("There is no " + name + ".");
    return *found;
  }

  // As large as it would be where the screen has room for it.
  static void ShowWhole(QWidget& form) {
    form.resize(form.sizeHint());
    WaitForBars(form);
  }
  // Until those stand there, and only those, that something can be scrolled with.
  static void WaitForBars(QWidget& form) {
    const auto stand = [&] {
      for (auto* area : form.findChildren<QScrollArea*>()) {
        if (!area->isVisible()) continue;
        for (auto* bar : {area->horizontalScrollBar(), area->verticalScrollBar()}) {
          if (bar->isVisible() != (bar->maximum() > 0)) return false;
        }
      }
      return true;
    };
    EXPECT_TRUE(QTest::qWaitFor(stand, 2000));
  }

  // --- The user ---

  static void Click(QWidget& form, const std::string& name) {
    QWidget& part = In(form, name);
    QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {},
                      part.mapTo(&form, QPoint(8, part.height() / 2)));
  }
  static void Key(QWidget& form, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(form.windowHandle(), key, modifiers);
  }
  static void Type(QWidget& form, const std::string& text) {
    for (const char letter : text) QTest::keyClick(form.windowHandle(), letter);
  }

  // --- What can be seen ---

  static std::string Text(QWidget& form, const std::string& name) {
    return In<QLineEdit>(form, name).text().toStdString();
  }
  // Where the keyboard's strokes go.
  static std::string Focus(const QWidget& form) {
    const QWidget* focused = form.focusWidget();
    return focused == nullptr ? "nothing" : focused->objectName().toStdString();
  }
  // Where it goes with `count` strokes of the tabulator, in one word each.
  static std::string Walk(QWidget& form, int count) {
    std::string walk;
    for (int i = 0; i < count; ++i) {
      Key(form, Qt::Key_Tab);
      walk += (i > 0 ? " " : "") + Focus(form);
    }
    return walk;
  }
  std::size_t FramesSent() {
    std::size_t count = 0;
    for (int i = 0; i < world.port_count(); ++i) count += world.port(i).frames().size();
    return count;
  }

  static boiler::SimulatedBoiler::Options Zolt() {
    boiler::SimulatedBoiler::Options options;
    options.protocol = "zolt";
    options.slave.answers_corrupted = true;
    options.line = {.pace = {.baud = 9600}, .answer_delay_us = 20'000};
    return options;
  }

  FakeWorld world;
  BoilerOnLine boiler{world, Zolt()};
  ErrorTexts texts;
  ToolHost host{.platform = world,
                .line = {[] { return 1; }, [] { return 3; }},
                .IgnoresErrors = [] { return true; },
                .LoadErrorTexts = [this]() -> const ErrorTexts& { return texts; },
                .IdFile = [] { return std::string("/home/user/default.ids"); },
                .LogPath = [] { return std::string("/home/user"); },
                .GoControlPanel = {}};
  std::optional<ServiceTools> tools{std::in_place, host, nullptr};
  std::optional<FileTools> file_tools{std::in_place, host, nullptr};
};

}  // namespace tarnlink
