// What every window owes its users, whatever it is for. `name` says which one it is where a check
// fails.
#pragma once

#include <QWidget>
#include <string>

namespace tarnlink {

// Each entry of a menu has a letter, no two the same; in a window no two controls that are seen
// have the same one. OK and Cancel may go without: Enter and Esc press them.
void ExpectMnemonics(const QWidget& window, const std::string& name);

// A screen reader is told a name for each control, one that a person sees, and no two fields of a
// group have the same.
void ExpectNames(QWidget& window, const std::string& name);

// All texts that the program gives have the room that they need.
void ExpectRoom(QWidget& window, const std::string& name);

// Letters stand out against what is behind them. Measured on the window's picture; what cannot be
// used need not be read, and the colours of a screen are its user's.
void ExpectContrast(QWidget& window, const std::string& name);

// The tabulator comes to each control that takes the keyboard, and round to where it began.
void ExpectTabReachesAll(QWidget& window, const std::string& name);

}  // namespace tarnlink
