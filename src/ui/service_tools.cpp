#include "ui/service_tools.h"

#include <utility>

#include "common/numbers.h"
#include "ui/on_demand.h"

namespace tarnlink {

ServiceTools::ServiceTools(ToolHost& host, QWidget* parent)
    : panel(host), scan(host), errors(host), sniffer(host), host_(host), parent_(parent) {
  host_.GoControlPanel = [this](int index, std::function<void()> closed) {
    GoControlPanel(index, std::move(closed));
  };
  MakeOnDemand(scan.form, [this] {
    scan_dialog_ = std::make_unique<ScanSlavesDialog>(scan, host_.platform.settings(), parent_);
  });
  MakeOnDemand(panel.form, [this] {
    panel_dialog_ =
        std::make_unique<ControlPanelDialog>(panel, host_.platform.settings(), BelowPanel());
  });
  MakeOnDemand(errors.form, [this] {
    errors_dialog_ =
        std::make_unique<WrongMessageDialog>(errors, host_.platform.settings(), parent_);
  });
  MakeOnDemand(sniffer.form, [this] {
    sniffer_window_ = std::make_unique<SnifferWindow>(sniffer, host_.platform.settings(), parent_);
  });
  MakeOnDemand(sniff_settings.form, [this] {
    sniff_dialog_ = std::make_unique<SniffSettingsDialog>(sniff_settings, host_.platform.settings(),
                                                          sniffer_window_.get());
  });
}

void ServiceTools::GoControlPanel(int Index, std::function<void()> closed) {
  if (panel.form.Visible) {
    if (closed) closed();
    return;
  }
  host_.SlaveAddress = Hex(Index);
  panel.Unloaded = std::move(closed);
  const bool is_elsewhere = panel_dialog_ && panel_dialog_->parentWidget() != BelowPanel();
  if (is_elsewhere) panel_dialog_->setParent(BelowPanel(), panel_dialog_->windowFlags());
  panel.Show();
}

QWidget* ServiceTools::BelowPanel() const {
  return scan.form.Visible ? scan_dialog_.get() : parent_;
}

}  // namespace tarnlink
