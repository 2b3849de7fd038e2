// What a screen reader is told of the widgets that paint themselves: what they are, what they show,
// that they can be pressed. Names and descriptions are the widgets' own.
#pragma once

namespace tarnlink {

// From now on, for all widgets of the program.
void InstallAccessibleParts();

}  // namespace tarnlink
