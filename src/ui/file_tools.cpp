#include "ui/file_tools.h"

#include "ui/on_demand.h"

namespace tarnlink {

namespace {

// The dialog comes with the first look at its form.
template <class Dialog, class Form>
void MakeDialog(std::unique_ptr<Dialog>& dialog, Form& form, SettingsStore& settings,
                QWidget* parent) {
  MakeOnDemand(form.form, [&dialog, &form, &settings, parent] {
    dialog = std::make_unique<Dialog>(form, settings, parent);
  });
}

}  // namespace

FileTools::FileTools(ToolHost& host, QWidget* parent)
    : parameters(host), eeprom(host), eeprom_down(host), cfg_check(host) {
  SettingsStore& settings = host.platform.settings();
  MakeDialog(parameters_dialog_, parameters, settings, parent);
  MakeDialog(eeprom_dialog_, eeprom, settings, parent);
  MakeDialog(eeprom_down_dialog_, eeprom_down, settings, parent);
  MakeDialog(cfg_check_dialog_, cfg_check, settings, parent);
  MakeDialog(wp_conversion_dialog_, wp_conversion, settings, parent);
}

}  // namespace tarnlink
