#include "monitor/frm_write_bit_value.h"

#include "monitor/location_table.h"

namespace tarnlink {

frm_WriteBitValue::frm_WriteBitValue() {
  form.Visible = false;
  txt_WriteValue.Visible = false;
  Choose(true);
  cmd_Ok.Click = [this] {
    txt_WriteValue.Text = BitText(opt_writetrue.Value);
    Close(true);
  };
  cmd_Cancel.Click = [this] {
    txt_WriteValue.Text = "";
    Close(false);
  };
}

void frm_WriteBitValue::Show() { form.Visible = true; }

void frm_WriteBitValue::Choose(bool is_true) {
  opt_writetrue.Value = is_true;
  Option1.Value = !is_true;
}

void frm_WriteBitValue::Close(bool is_ok) {
  if (!form.Visible) return;
  form.Visible = false;
  if (Closed) Closed(is_ok);
}

}  // namespace tarnlink
