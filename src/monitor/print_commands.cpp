#include "monitor/print_commands.h"

#include "common/paths.h"
#include "files/screen_export.h"
#include "monitor/screen_sheet.h"

namespace tarnlink {

namespace {

// Users see the File menu go while a screen is printed. It comes back however the printing ends.
class Hidden {
 public:
  explicit Hidden(Control& control) : control_(control) { control_.Visible = false; }
  ~Hidden() { control_.Visible = true; }
  Hidden(const Hidden&) = delete;
  Hidden& operator=(const Hidden&) = delete;

 private:
  Control& control_;
};

// Beside the screen, under its name.
std::string PdfName(const std::string& screen) {
  if (screen.empty()) return "screen.pdf";
  const std::string name = StripFileFromPath(screen);
  const std::size_t dot = name.rfind('.');
  const bool has_extension = dot != std::string::npos && dot > 0;
  const std::size_t cut = has_extension ? name.size() - dot : 0;
  return screen.substr(0, screen.size() - cut) + ".pdf";
}

}  // namespace

PrintCommands::PrintCommands(frm_Main& main) : main_(main) {
  main_.mnuPrint.Click = [this] { mnuPrint(); };
}

void PrintCommands::mnuPrint() {
  const Hidden menu(main_.M_file);
  Platform& platform = main_.platform();
  const ScreenSheet sheet =
      TakeSheet(main_, ExportMoment(platform.clock().Now(), platform.locale().Months()));
  platform.dialogs().Preview(
      {.title = "Print Screen",
       .file_name = PdfName(main_.CurrentTarnLinkFile),
       .setup = {.landscape = IsWide(sheet)},
       .draw = [sheet](DrawingSurface& surface) { DrawSheet(sheet, surface); }});
}

}  // namespace tarnlink
