#include "monitor/help_chapters.h"

#include <algorithm>

namespace tarnlink {
namespace {

constexpr HelpChapter kChapters[] = {
    {"frm_Main", "run.html"},
    {"frm_FirstSteps", kHelpStart},
    {"frm_LinkHealth", "link.html"},
    {"frm_LinkTrace", "link.html"},
    {"frm_Options", "options.html"},
    {"frm_Settings", "settings.html"},
    {"frm_WriteValue", "write.html"},
    {"frm_WriteBitValue", "write.html"},
    {"frm_multiple_reg", "write.html"},
    {"frmGraphic", "graph.html"},
    {"frmGraphConf", "graph-settings.html"},
    {"frmFileProgress", "graph-files.html"},
    {"frmTestMode", "graph-files.html"},
    {"frm_ContPanel", "control-panel.html"},
    {"frm_ScanSlaves", "scan-slaves.html"},
    {"frmSniffer", "sniffer.html"},
    {"frm_Sniff_Settings", "sniffer.html"},
    {"frm_IPMsgErr", "wrong-messages.html"},
    {"frmGenParFile", "parameters.html"},
    {"frmWriteParameters", "parameters.html"},
    {"frm_EEPROM", "eeprom.html"},
    {"frm_EEPROM_Down", "eeprom.html"},
    {"frm_EEPROMRead_Progress", "eeprom.html"},
    {"frm_CfgCheck", "cfg-check.html"},
    {"frmWPconversion", "pressure.html"},
    {"frmAbout", "about.html"},
};

}  // namespace

std::span<const HelpChapter> HelpChapters() { return kChapters; }

std::string_view HelpPageOf(std::string_view form) {
  const auto* chapter = std::ranges::find(kChapters, form, &HelpChapter::form);
  return chapter == std::end(kChapters) ? std::string_view() : chapter->page;
}

}  // namespace tarnlink
