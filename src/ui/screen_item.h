// Which object of the screen a widget shows.
#pragma once

namespace tarnlink {

enum class ItemKind { kNone, kName, kValue, kCheck, kLabel };

inline constexpr int kItemKinds = 5;

struct ScreenItem {
  ItemKind kind = ItemKind::kNone;  // kNone: the form's free area
  int index = 0;

  bool operator==(const ScreenItem&) const = default;
};

}  // namespace tarnlink
