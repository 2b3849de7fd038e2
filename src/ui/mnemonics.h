// Letters that are pressed together with Alt: whatever can be chosen by its caption, and whose
// caption has none of its own, gets one in the view. The caption itself stays as it is told, but
// for the mark before the letter.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QString>
#include <QWidget>

namespace tarnlink {

// Each entry of the menu has a letter that no other entry of it has, now and after every change.
void KeepMnemonics(QMenu* menu);

// An entry that any text can stand in is chosen with this digit, which stands before it.
void GiveDigit(QMenu* menu, QAction* entry, int digit);

// The same for the buttons, tabs and labelled fields of a window, as far as there are letters.
// Pages of tabs can have the same ones, for only one of them is seen.
void GiveMnemonics(QWidget* window);

// Shows another caption, with a letter where the others have theirs; the same one keeps its letter.
void ShowCaption(QAbstractButton* button, const QString& caption);
void ShowCaption(QLabel* label, const QString& caption);
void ShowCaption(QAction* entry, const QString& caption);

// What is read of a caption: its marks are gone, "&&" is one "&".
QString WithoutMark(const QString& caption);

}  // namespace tarnlink
