// The service tools put together with their windows: one of them at a time has the port.
#pragma once

#include <QWidget>
#include <memory>

#include "tools/frm_cont_panel.h"
#include "tools/frm_ip_msg_err.h"
#include "tools/frm_scan_slaves.h"
#include "tools/frm_sniff_settings.h"
#include "tools/frm_sniffer.h"
#include "ui/control_panel_dialog.h"
#include "ui/scan_slaves_dialog.h"
#include "ui/sniff_settings_dialog.h"
#include "ui/sniffer_window.h"
#include "ui/wrong_message_dialog.h"

namespace tarnlink {

class ServiceTools {
 public:
  // `host` and `parent`, the window that they open over, outlive it. Becomes the host's
  // `GoControlPanel`.
  ServiceTools(ToolHost& host, QWidget* parent);

  // On the slave of this number; `closed` comes when the panel has been. One that is open stays on
  // its slave.
  void GoControlPanel(int Index, std::function<void()> closed = {});
  void ShowScanSlaves() { scan.Show(); }
  void ShowErrorGenerator() { errors.Show(); }
  void ShowSniffer() { sniffer.Show(); }

  frm_ContPanel panel;
  frm_ScanSlaves scan;
  frm_IPMsgErr errors;
  frmSniffer sniffer;
  frm_Sniff_Settings sniff_settings{sniffer};

 private:
  // The window that the panel opens over, and never goes behind.
  QWidget* BelowPanel() const;

  ToolHost& host_;
  QWidget* parent_;
  std::unique_ptr<ScanSlavesDialog> scan_dialog_;
  std::unique_ptr<ControlPanelDialog> panel_dialog_;
  std::unique_ptr<WrongMessageDialog> errors_dialog_;
  std::unique_ptr<SnifferWindow> sniffer_window_;
  std::unique_ptr<SniffSettingsDialog> sniff_dialog_;
};

}  // namespace tarnlink
