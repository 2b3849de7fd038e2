#include "app/program.h"

#include <QCoreApplication>

#include "common/numbers.h"
#include "common/text.h"
#include "monitor/project_paths.h"
#include "ui/on_demand.h"

namespace tarnlink {

namespace {

// The line as the options have it whenever a tool begins.
GraphPort GraphPortOf(Monitor& monitor) {
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

}  // namespace

Program::Program() {
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
  graph_ = std::make_unique<GraphTool>(platform_, GraphPortOf(monitor_), GraphProjectOf(monitor_),
                                       &window_);
  monitor_.main.ShowGraphic = [this] { graph_->Show(monitor_.main.GraphicFile); };
  monitor_.main.Unload = [this] {
    graph_->Leave([this] {
      window_.LetGo();
      QCoreApplication::quit();
    });
  };
}

void Program::Start(const std::vector<std::string>& files) {
  monitor_.start.Form_Load();
  window_.ShowPlace();
  window_.show();
  for (const std::string& file : files) {
    if (ToLower(file).ends_with(".wcr")) {
      monitor_.screen.OpenTarnLinkFileBuildScreen(file);
    } else {
      monitor_.project_files.AddDroppedFile(file);
    }
  }
}

}  // namespace tarnlink
