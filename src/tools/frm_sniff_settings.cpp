#include "tools/frm_sniff_settings.h"

#include <cstdint>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr std::size_t kIdDigits = 4;
constexpr int kLastBit = 7;  // of the low byte

// A line end of either form is one blank.
std::string InOneLine(const std::string& text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && text.substr(i + 1, 1) == "\n") continue;
    line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
  }
  return line;
}

}  // namespace

frm_Sniff_Settings::frm_Sniff_Settings(frmSniffer& sniffer)
    : opt_Representation(
          "opt_Representation",
          std::vector<std::string>(kRepresentationCaptions.begin(), kRepresentationCaptions.end())),
      sniffer_(sniffer) {
  form.Visible = false;
  txt_SniffAddress.MaxLength = kIdDigits;
  txt_SniffAddress.ToolTipText = "ID in HEX format !";
  sniffer_.ShowSettings = [this](int Index) { Show(Index); };
  sniffer_.CloseSettings = [this] { Close(); };
  opt_sniff_storage_type.Click = [this](int type) {
    TypeClicked(type);
    lbl_Wrong.Caption = "";
  };
  ud_Col.Step = [this](int step) { StepColumn(step); };
  txt_SniffAddress.Change = txt_SniffBitAddress.Change = [this] { lbl_Wrong.Caption = ""; };
  cmd_Ok.Click = [this] {
    lbl_Wrong.Caption = WhatIsWrong();
    if (!lbl_Wrong.Caption->empty()) return;
    TakeOver();
    Close();
  };
  cmd_Cancel.Click = [this] { Close(); };
  cmdDeleteLocation.Click = [this] {
    sniffer_.DeleteItem(index_);
    Close();
  };
}

void frm_Sniff_Settings::Show(int Index) {
  const SniffLocation& item = sniffer_.SniffItems.at(static_cast<std::size_t>(Index));
  index_ = Index;
  txt_SniffAddress.Text = item.Address;
  txt_SniffAlias.Text = item.Alias;
  opt_sniff_storage_type.Choose(item.SnifferType);
  if (item.SnifferType == kSniffBit) txt_SniffBitAddress.Text = std::to_string(item.BitAddress);
  opt_Representation.Select(item.Representation);
  lbl_Wrong.Caption = "";
  chk_Log.Value = item.LogEnable != 0;
  chk_UseDDE.Value = item.DDEEnable != 0;
  txt_ExcelColumn.Text = item.ExcelColumn;
  form.Visible = true;
}

// A bit is TRUE or FALSE in whatever representation.
void frm_Sniff_Settings::TypeClicked(int type) {
  const bool is_bit = type == kSniffBit;
  frm_Representation.Enabled = !is_bit;
  for (int i = 0; i < opt_Representation.count(); ++i) opt_Representation(i).Enabled = !is_bit;
  txt_SniffBitAddress.Enabled = is_bit;
  txt_SniffBitAddress.BackColor = is_bit ? kWindowBackground : kFormBackground;
  if (!is_bit) txt_SniffBitAddress.Text = "0";
}

void frm_Sniff_Settings::StepColumn(int step) {
  txt_ExcelColumn.Text = SteppedColumn(txt_ExcelColumn.Text.get(), step);
}

// As long as it is the item's, an ID is right whatever it is: it has come by.
bool frm_Sniff_Settings::HasOtherId() const {
  return txt_SniffAddress.Text.get() !=
         sniffer_.SniffItems.at(static_cast<std::size_t>(index_)).Address;
}

std::string frm_Sniff_Settings::WhatIsWrong() const {
  const std::string id = Trim(txt_SniffAddress.Text.get());
  const bool is_id = !id.empty() && id.size() <= kIdDigits &&
                     id.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
  if (HasOtherId() && !is_id) {
    return "The ID is 1 to " + std::to_string(kIdDigits) + " hexadecimal digits.";
  }
  const std::string bit = Trim(txt_SniffBitAddress.Text.get());
  const bool is_bit = bit.size() == 1 && bit.front() >= '0' && bit.front() <= '0' + kLastBit;
  if (!is_bit) return "The bit is 0 to " + std::to_string(kLastBit) + ".";
  return "";
}

void frm_Sniff_Settings::TakeOver() {
  SniffLocation item = sniffer_.SniffItems.at(static_cast<std::size_t>(index_));
  if (HasOtherId()) item.Address = FormatHex(Trim(txt_SniffAddress.Text.get()), kIdDigits);
  item.Alias = InOneLine(txt_SniffAlias.Text.get());
  item.SnifferType = opt_sniff_storage_type.Selected();
  item.BitAddress = static_cast<std::uint8_t>(ValInt(txt_SniffBitAddress.Text.get(), 0, kLastBit));
  item.Representation = opt_Representation.Selected();
  item.LogEnable = chk_Log.Value ? 1 : 0;
  item.DDEEnable = chk_UseDDE.Value ? 1 : 0;
  item.ExcelColumn = txt_ExcelColumn.Text;
  sniffer_.ChangeItem(index_, item);
}

}  // namespace tarnlink
