#include "tools/frm_sniff_settings.h"

#include <cstdint>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr int kIdDigits = 4;
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
  opt_sniff_storage_type.Click = [this](int type) { TypeClicked(type); };
  ud_Col.Step = [this](int step) { StepColumn(step); };
  cmd_Ok.Click = [this] {
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

void frm_Sniff_Settings::TakeOver() {
  SniffLocation item = sniffer_.SniffItems.at(static_cast<std::size_t>(index_));
  item.Address = FormatHex(txt_SniffAddress.Text.get(), kIdDigits);
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
