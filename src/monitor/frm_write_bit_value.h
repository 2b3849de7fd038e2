// The dialog that asks what a bit is to be set to.
#pragma once

#include <functional>

#include "common/controls.h"

namespace tarnlink {

class frm_WriteBitValue {
 public:
  frm_WriteBitValue();

  Control form{"frm_WriteBitValue"};
  Label caption{"frm_WriteBitValue.Caption", "Write Bit Value"};

  // Two buttons of one group that have names of their own; at most one is set.
  OptionButton opt_writetrue{"opt_writetrue", "TRUE"};
  OptionButton Option1{"Option1", "FALSE"};
  CommandButton cmd_Ok{"cmd_Ok", "&Write Bit"};
  CommandButton cmd_Cancel{"cmd_Cancel", "&Cancel Write"};
  TextBox txt_WriteValue{"txt_WriteValue"};  // hidden: the result, "TRUE", "FALSE" or nothing

  void Show();
  // The user's click on one of the two.
  void Choose(bool is_true);

  // The dialog has closed: by "Write Bit", or without a wish to write.
  std::function<void(bool is_ok)> Closed;

 private:
  void Close(bool is_ok);
};

}  // namespace tarnlink
