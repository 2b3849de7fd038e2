#include "ui/service_tools.h"

#include <utility>

#include "common/numbers.h"
#include "ui/on_demand.h"

namespace tarnlink {

ServiceTools::ServiceTools(ToolHost& host, QWidget* parent)
    : panel(host), scan(host), errors(host), sniffer(host), host_(host) {
  host_.GoControlPanel = [this](int index, std::function<void()> closed) {
    GoControlPanel(index, std::move(closed));
  };
  MakeOnDemand(scan.form,
               [this, parent] { scan_dialog_ = std::make_unique<ScanSlavesDialog>(scan, parent); });
  MakeOnDemand(panel.form, [this, parent] {
    panel_dialog_ = std::make_unique<ControlPanelDialog>(panel, parent);
  });
  MakeOnDemand(errors.form, [this, parent] {
    errors_dialog_ = std::make_unique<WrongMessageDialog>(errors, parent);
  });
  MakeOnDemand(sniffer.form, [this, parent] {
    sniffer_window_ = std::make_unique<SnifferWindow>(sniffer, parent);
  });
  MakeOnDemand(sniff_settings.form, [this] {
    sniff_dialog_ = std::make_unique<SniffSettingsDialog>(sniff_settings, sniffer_window_.get());
  });
}

void ServiceTools::GoControlPanel(int Index, std::function<void()> closed) {
  host_.SlaveAddress = Hex(Index);
  panel.Unloaded = std::move(closed);
  panel.Show();
}

}  // namespace tarnlink
