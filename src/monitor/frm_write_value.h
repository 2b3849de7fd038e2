// The dialog that asks for the value to be written to a Location. What the value becomes, and
// where it goes, is decided in write_commands.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "common/control_array.h"
#include "common/controls.h"
#include "monitor/location_table.h"

namespace tarnlink {

inline constexpr Colour kGrayText = static_cast<Colour>(0x80000011);
inline constexpr Colour kButtonText = static_cast<Colour>(0x80000012);

// Members of `Option1`.
inline constexpr int kSingleWrite = 0;
inline constexpr int kMultipleWrite = 1;

class frm_WriteValue {
 public:
  frm_WriteValue();

  Control form{"frm_WriteValue"};
  Label caption{"frm_WriteValue.Caption"};

  // Of the Location to be written. Set by the caller, as `first_load` is.
  std::uint8_t Representation = kDecimal;
  bool first_load = true;

  TextBox txt_WriteValue{"txt_WriteValue"};
  OptionGroup opt_WriteValueFormat{"opt_WriteValueFormat",
                                   {"Decimal", "Hexadecimal", "Binary", "Octal"}};
  OptionGroup Option1{"Option1", {"Single Write", "Multiple Write"}};
  TextBox Text1{"Text1"};
  Label Label3{"Label3", "Number of Registers"};
  CommandButton Values{"Values", "Values"};
  CommandButton cmd_WriteOk{"cmd_WriteOk", "Write Ok"};
  CommandButton cmd_WriteCancel{"cmd_WriteCancel", "Write Cancel"};
  // What would go out if the user wrote now.
  Label lbl_GoesOut{"lbl_GoesOut"};

  // Shows the dialog, which is modal.
  void Show();
  // Shows anew what would go out.
  void ShowGoesOut();

  // The text of `lbl_GoesOut`.
  std::function<std::string()> GoesOut;
  // The dialog has closed: by "Write Ok", or without a wish to write.
  std::function<void(bool is_ok)> Closed;
  // Gives `txt_WriteValue` the keyboard, with all of its text selected; the view hooks in here.
  std::function<void()> SetFocus;

 private:
  void Activate();
  void SelectFormat();
  void ChooseSingle();
  void ChooseMultiple();
  void FocusValue();
  void Close(bool is_ok);
};

}  // namespace tarnlink
