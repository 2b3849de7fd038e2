#include "app/program.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>

#include "common/numbers.h"
#include "common/text.h"
#include "monitor/project_paths.h"
#include "monitor/tool_commands.h"
#include "platform/qt/port_guard.h"
#include "platform/qt/qt_simulated_boiler.h"
#include "ui/on_demand.h"

namespace tarnlink {

namespace {

// The line as the options have it whenever a tool begins.
ServiceLine LineOf(Monitor& monitor) {
  return {.ComPortNumber =
              [&monitor] { return ValInt(monitor.options.ComPortNumber.Text.get(), 0, INT16_MAX); },
          .Baudrate = [&monitor] { return StoredBaudrate(monitor.main.platform().settings()); }};
}

GraphProject GraphProjectOf(Monitor& monitor) {
  return {
      .mss_folder = monitor.main.MssCmnDlg.InitDir,
      .grp_folder = monitor.main.GrpCmnDlg.InitDir,
      .HasFile = [&monitor](const std::string& name) { return HoldsFile(monitor.main, name); },
      .AddFile = [&monitor](const std::string& name) { AddSavedFile(monitor.main, "grp", name); }};
}

ToolHost ToolHostOf(Platform& platform, Monitor& monitor) {
  return {.platform = platform,
          .line = LineOf(monitor),
          .IgnoresErrors = [&monitor] { return monitor.options.chk_DisableCommErrors.Value.get(); },
          .LoadErrorTexts = [&monitor]() -> const ErrorTexts& {
            monitor.ids.LoadErrorTexts();
            return monitor.ids.error_texts();
          },
          .IdFile = [&monitor] { return monitor.options.txt_ZOLTIDDef.Text.get(); },
          .LogPath = [&monitor] { return monitor.options.txt_LogPath.Text.get(); },
          .GoControlPanel = {},
          .GivePort = [&monitor] { return GivePort(monitor.main); },
          .MsgTimeout = [&monitor] { return monitor.options.sld_MsgTimeout.Value.get(); },
          .ParameterFile = [&monitor] { return monitor.main.ParameterFile; },
          .ParFolder = [&monitor] { return monitor.main.ParCmnDlg.InitDir; },
          .KeepParFolder =
              [&monitor](const std::string& folder) { monitor.main.ParCmnDlg.InitDir = folder; }};
}

}  // namespace

Program::Program() : tool_host_(ToolHostOf(platform_, monitor_)) {
  MakeOnDemand(monitor_.options.form, [this] {
    options_ = std::make_unique<OptionsDialog>(monitor_.options, platform_.devices(), &window_);
  });
  MakeOnDemand(monitor_.about.form,
               [this] { about_ = std::make_unique<AboutDialog>(monitor_.about, &window_); });
  MakeOnDemand(monitor_.settings.form, [this] {
    settings_ = std::make_unique<SettingsDialog>(monitor_.settings, &window_);
  });
  MakeOnDemand(monitor_.write_value.form, [this] {
    write_value_ = std::make_unique<WriteValueDialog>(monitor_.write_value, &window_);
  });
  MakeOnDemand(monitor_.write_bit.form, [this] {
    write_bit_ = std::make_unique<WriteBitDialog>(monitor_.write_bit, &window_);
  });
  MakeOnDemand(monitor_.write_registers.form, [this] {
    write_registers_ =
        std::make_unique<MultipleRegistersDialog>(monitor_.write_registers, write_value_.get());
  });
  MakeOnDemand(monitor_.gen_par_file.form, [this] {
    gen_par_file_ =
        std::make_unique<GenParFileDialog>(monitor_.gen_par_file, platform_.settings(), &window_);
  });
  graph_ =
      std::make_unique<GraphTool>(platform_, LineOf(monitor_), GraphProjectOf(monitor_), &window_);
  MakeTools();
  monitor_.main.ShowGraphic = [this] { graph_->Show(monitor_.main.GraphicFile); };
  monitor_.main.Unload = [this] {
    window_.LetGo();
    QCoreApplication::quit();
  };
  graph_->ShowAgain = [this](const std::string& properties) {
    OpenTool(monitor_.main, [&] { graph_->Show(properties); });
  };
  monitor_.main.MayEnd = [this](std::function<void()> again) {
    return graph_->Leave(std::move(again));
  };
}

void Program::MakeTools() {
  frm_Main& main = monitor_.main;
  tools_ = std::make_unique<ServiceTools>(tool_host_, &window_);
  main.GoControlPanel = [this](int index) { tools_->GoControlPanel(index); };
  main.ShowScanSlaves = [this] { tools_->ShowScanSlaves(); };
  main.ShowSniffer = [this] { tools_->ShowSniffer(); };
  main.ShowErrorGenerator = [this] { tools_->ShowErrorGenerator(); };
  file_tools_ = std::make_unique<FileTools>(tool_host_, &window_);
  main.ShowParameters = [this] { file_tools_->parameters.Show(); };
  main.ShowEepromWriter = [this] { file_tools_->eeprom.Show(); };
  main.ShowEepromDownloader = [this] { file_tools_->eeprom_down.Show(); };
  main.ShowCfgCheck = [this] { file_tools_->cfg_check.Show(); };
  main.ShowWPConversion = [this] { file_tools_->wp_conversion.Show(); };
}

FirstStepsHost Program::HostOfFirstSteps() {
  return {.WhyUnusable = WhyUnusable,
          .StartBoiler = [] { return std::make_unique<QtSimulatedBoiler>(); },
          .OpenFiles = [this](const std::vector<std::string>& files) { OpenFiles(files); }};
}

void Program::Start(const std::vector<std::string>& files) {
  monitor_.start.Form_Load();
  window_.ShowPlace();
  window_.show();
  OpenFiles(files);
  first_steps_.Look();
}

void Program::OpenFiles(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    if (ToLower(file).ends_with(".wcr")) {
      monitor_.screen.OpenTarnLinkFileBuildScreen(file);
    } else {
      monitor_.project_files.AddDroppedFile(file);
    }
  }
}

void Program::Leave() {
  const QPointer<QWidget> modal = QApplication::activeModalWidget();
  if (modal.isNull()) {
    window_.close();
    return;
  }
  modal->close();
  // On with it once whoever waited for that window has come back.
  if (modal.isNull() || !modal->isVisible()) QTimer::singleShot(0, &window_, [this] { Leave(); });
}

}  // namespace tarnlink
