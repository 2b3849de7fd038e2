#include "monitor/address_check.h"

namespace tarnlink {

void AddressCheck::AdaptAddress(int index) {
  Location& location = main_.Locations[index];
  if (!map_.IsMoved(location)) return;
  if (!adapts_) adapts_ = Ask();
  if (!*adapts_) return;
  location.Address = FixedAddress(map_.AddressOf(location));
  // The title shows the mark while the screen is built; the end of the opening takes it away again.
  // Users know it that way.
  main_.MarkChanged();
}

bool AddressCheck::Ask() {
  const char* kind = main_.MicroType == kNecListing ? "NEC" : "MAP";
  const Answer answer = main_.platform().dialogs().MessageBox(
      {.text =
           std::string("Addresses are not corresponding with ") + kind + " file. Adapt addresses ?",
       .title = std::string(kProgramTitle),
       .icon = Icon::kExclamation,
       .buttons = Buttons::kOkCancel});
  return answer == Answer::kOk;
}

}  // namespace tarnlink
