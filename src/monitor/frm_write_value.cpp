#include "monitor/frm_write_value.h"

namespace tarnlink {

namespace {

constexpr int kLongestValue = 6;

}  // namespace

frm_WriteValue::frm_WriteValue() {
  form.Visible = false;
  txt_WriteValue.MaxLength = kLongestValue;
  opt_WriteValueFormat.Select(kDecimal);
  Option1.Select(kSingleWrite);
  Label3.ForeColor = kGrayText;
  txt_WriteValue.Change = [this] { ShowGoesOut(); };
  Text1.Change = [this] { ShowGoesOut(); };
  opt_WriteValueFormat.Click = [this](int) {
    txt_WriteValue.MaxLength = kLongestValue;
    FocusValue();
    ShowGoesOut();
  };
  Option1.Click = [this](int index) {
    index == kSingleWrite ? ChooseSingle() : ChooseMultiple();
    ShowGoesOut();
  };
  cmd_WriteOk.Click = [this] { Close(true); };
  cmd_WriteCancel.Click = [this] {
    txt_WriteValue.Text = "";
    Close(false);
  };
}

void frm_WriteValue::Show() {
  if (first_load) Activate();
  ShowGoesOut();
  form.Visible = true;
  FocusValue();
}

void frm_WriteValue::ShowGoesOut() {
  if (GoesOut) lbl_GoesOut.Caption = "Goes out: " + GoesOut();
}

void frm_WriteValue::Activate() {
  Text1.Enabled = false;
  Values.Enabled = false;
  Option1.Select(kSingleWrite);
  SelectFormat();
  first_load = false;
}

// A binary or octal text cannot be written as it stands in its box.
void frm_WriteValue::SelectFormat() {
  if (Representation == kDecimal || Representation == kHexadecimal) {
    opt_WriteValueFormat.Select(Representation);
  } else {
    txt_WriteValue.Text = "";
  }
}

void frm_WriteValue::ChooseSingle() {
  opt_WriteValueFormat(kDecimal).Visible = true;
  opt_WriteValueFormat(kHexadecimal).Visible = true;
  SelectFormat();
  Text1.Enabled = false;
  Values.Enabled = false;
  Label3.ForeColor = kGrayText;
}

void frm_WriteValue::ChooseMultiple() {
  for (int i = 0; i < opt_WriteValueFormat.count(); ++i) opt_WriteValueFormat(i).Visible = false;
  Text1.Enabled = true;
  Values.Enabled = true;
  Label3.ForeColor = kButtonText;
}

void frm_WriteValue::FocusValue() {
  if (SetFocus) SetFocus();
}

void frm_WriteValue::Close(bool is_ok) {
  if (!form.Visible) return;
  FocusValue();
  form.Visible = false;
  if (Closed) Closed(is_ok);
}

}  // namespace tarnlink
