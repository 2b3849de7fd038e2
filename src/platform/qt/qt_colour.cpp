#include "platform/qt/qt_colour.h"

#include <QGuiApplication>
#include <QPalette>
#include <array>
#include <cstdint>

namespace tarnlink {
namespace {

constexpr std::uint32_t kSystemBit = 0x80000000U;

// The system colours by number: scroll bar, desktop, active and inactive title, menu, window,
// window frame, menu text, window text, title text, active and inactive border, work space,
// highlight, highlighted text, button face, button shadow, grey text, button text, inactive title
// text, button highlight, dark shadow, light, tool tip text, tool tip.
constexpr std::array<QPalette::ColorRole, 25> kRoles{QPalette::Button,
                                                     QPalette::Window,
                                                     QPalette::Highlight,
                                                     QPalette::Window,
                                                     QPalette::Window,
                                                     QPalette::Base,
                                                     QPalette::WindowText,
                                                     QPalette::WindowText,
                                                     QPalette::Text,
                                                     QPalette::HighlightedText,
                                                     QPalette::Window,
                                                     QPalette::Window,
                                                     QPalette::Mid,
                                                     QPalette::Highlight,
                                                     QPalette::HighlightedText,
                                                     QPalette::Window,
                                                     QPalette::Dark,
                                                     QPalette::PlaceholderText,
                                                     QPalette::ButtonText,
                                                     QPalette::WindowText,
                                                     QPalette::Light,
                                                     QPalette::Shadow,
                                                     QPalette::Midlight,
                                                     QPalette::ToolTipText,
                                                     QPalette::ToolTipBase};

}  // namespace

QColor ToQColor(Colour colour) {
  const auto bits = static_cast<std::uint32_t>(colour);
  if ((bits & kSystemBit) != 0) {
    const std::uint32_t number = bits & 0xFF;
    const auto role = number < kRoles.size() ? kRoles[number] : QPalette::Window;
    return QGuiApplication::palette().color(role);
  }
  return QColor(static_cast<int>(bits & 0xFF), static_cast<int>(bits >> 8 & 0xFF),
                static_cast<int>(bits >> 16 & 0xFF));
}

Colour ToColour(const QColor& colour) {
  return colour.red() | colour.green() << 8 | colour.blue() << 16;
}

}  // namespace tarnlink
