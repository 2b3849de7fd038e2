// The dialog for the values of a block of registers that are written by one message.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "common/control_array.h"
#include "common/controls.h"
#include "monitor/frm_main.h"

namespace tarnlink {

inline constexpr int kRegisterLines = 20;

// One line of the dialog. Places are in units of 1440 to the inch.
struct RegisterLine {
  std::string spare = {};
  std::string value = {};  // four hexadecimal digits, once stored
  std::int16_t NameTop = 0;
  std::int16_t NameLeft = 0;
  std::int16_t ValueTop = 0;
  std::int16_t ValueLeft = 0;
};

class frm_multiple_reg {
 public:
  explicit frm_multiple_reg(frm_Main& main);

  Control form{"frm_multiple_reg"};
  Label caption{"frm_multiple_reg.Caption", "Multiple Registers"};
  // The texts are decimal whichever is set.
  OptionGroup Option_multiplereg{"Option_multiplereg", {"Decimal", "Hexadecimal"}};
  CommandButton Command1{"Command1", "Store values"};
  ControlArray<Label> Space{"Space"};
  ControlArray<TextBox> value{"value"};

  int NumReg_frm = 0;                                          // 1 to kRegisterLines
  std::array<RegisterLine, kRegisterLines + 1> show_location;  // index 0 is not used

  // Shows the lines of `NumReg_frm` registers, from Location `SelectedLocation` on. What has been
  // typed since the form was loaded stays.
  void Show();
  // Closes it without storing: nothing is left to be written.
  void Dismiss();
  // Forgets all lines and what they stored.
  void Unload();

  // The dialog has closed.
  std::function<void()> Closed;

 private:
  void Load();
  void LoadLine(int k);
  void StoreValues();
  void Hide();

  frm_Main& main_;
  bool is_loaded_ = false;
};

}  // namespace tarnlink
