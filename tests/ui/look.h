// The light and the dark desktop that pictures are taken on.
#pragma once

#include <QApplication>
#include <QPalette>

namespace tarnlink {

inline QPalette DarkPalette() {
  QPalette dark(QColor(53, 53, 53));
  dark.setColor(QPalette::Base, QColor(35, 35, 35));
  dark.setColor(QPalette::AlternateBase, QColor(53, 53, 53));
  dark.setColor(QPalette::ToolTipBase, QColor(35, 35, 35));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::ToolTipText, QPalette::BrightText}) {
    dark.setColor(role, QColor(235, 235, 235));
    dark.setColor(QPalette::Disabled, role, QColor(127, 127, 127));
  }
  dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
  dark.setColor(QPalette::HighlightedText, Qt::black);
  return dark;
}

struct Look {
  const char* name;
  bool dark;
};

}  // namespace tarnlink
