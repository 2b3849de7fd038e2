#include "app/program.h"

#include <QCoreApplication>

#include "ui/on_demand.h"

namespace tarnlink {

Program::Program() {
  MakeOnDemand(monitor_.options.form, [this] {
    options_ = std::make_unique<OptionsDialog>(monitor_.options, platform_.devices(), &window_);
  });
  MakeOnDemand(monitor_.about.form,
               [this] { about_ = std::make_unique<AboutDialog>(monitor_.about, &window_); });
  monitor_.main.Unload = [this] {
    window_.LetGo();
    QCoreApplication::quit();
  };
}

void Program::Start(const std::string& screen) {
  monitor_.start.Form_Load();
  window_.ShowPlace();
  window_.show();
  if (!screen.empty()) monitor_.screen.OpenTarnLinkFileBuildScreen(screen);
}

}  // namespace tarnlink
