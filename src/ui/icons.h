// The pictures on the tool bar: drawn here, so that they can be told from a light and from a dark
// background alike.
#pragma once

#include <QIcon>

namespace tarnlink {

QIcon StartIcon();
QIcon StopIcon();

}  // namespace tarnlink
