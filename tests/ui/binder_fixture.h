// Widgets bound to controls, on a window of their own.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QVBoxLayout>
#include <QWidget>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ui/binders.h"

namespace tarnlink {

class BinderTest : public ::testing::Test {
 protected:
  BinderTest() { layout_ = new QVBoxLayout(&window); }

  // A control that outlives the window.
  template <class T, class... Arguments>
  T& Make(Arguments&&... arguments) {
    auto made = std::make_unique<T>(std::forward<Arguments>(arguments)...);
    T& control = *made;
    controls_.push_back(std::move(made));
    return control;
  }

  // Puts a widget on the window before it is bound, as a form does that is built at once.
  template <class T>
  T* Add() {
    auto* widget = new T;
    layout_->addWidget(widget);
    return widget;
  }

  void ShowWindow() {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }

 private:
  std::vector<std::unique_ptr<Control>> controls_;

 protected:
  QWidget window;

 private:
  QVBoxLayout* layout_;
};

}  // namespace tarnlink
