#include "graph/file_commands.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "common/paths.h"
#include "common/text.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

constexpr const char* kMeasurements = "Measurements (*.mss)|*.mss";
constexpr const char* kProperties = "Graphic Properties (*.grp)|*.grp";
constexpr const char* kTable = "Text File (*.txt)|*.txt|Workbook (*.xlsx)|*.xlsx";

constexpr int kAutoSaveTick = 60'000;  // ms

}  // namespace

FileCommands::FileCommands(frmGraphic& graph, frmContextMenu& menu, GraphDisplay& display,
                           MeasureFiles& files, frmGraph2Printer& printer, GraphProject& project)
    : graph_(graph),
      menu_(menu),
      display_(display),
      files_(files),
      printer_(printer),
      project_(project) {
  menu_.mnuOpenMeasure.Click = [this] { mnuOpenMeasure(); };
  menu_.mnuSaveMeasure.Click = [this] { mnuSaveMeasure(); };
  menu_.mnuExport.Click = [this] { mnuExport(); };
  menu_.mnuOpenProperties.Click = [this] { mnuOpenProperties(); };
  menu_.mnuSaveProperties.Click = [this] { mnuSaveProperties(); };
  menu_.mnuAutoSave.Click = [this] { mnuAutoSave(); };
  menu_.mnuPrint.Click = [this] { mnuPrint(); };
  files_.DrawAgain = [this] { display_.DrawAgain(); };
}

std::string FileCommands::NameOfToday(const std::string& behind) const {
  return FormatDate(graph_.Now(), "ddmmmyy", graph_.platform().locale().Months()) + behind;
}

void FileCommands::SetDefaultHeader(const std::string& FileName) {
  constexpr int kExtension = 4;  // with its dot
  const std::string_view path = FileName;
  const std::size_t first = FirstCharacters(path, 1).size();
  const int count = CharacterCount(path) - kExtension;
  const std::string_view name = path.substr(0, FirstCharacters(path, std::max(count, 0)).size());
  std::size_t begin = name.size();
  while (begin > first && !IsSeparator(name[begin - 1])) --begin;
  printer_.HeaderText = name.substr(begin);
}

// --- Measurements --------------------------------------------------------------------------------

void FileCommands::mnuOpenMeasure() {
  const auto name = dialogs().OpenFile({.filter = kMeasurements, .folder = project_.mss_folder});
  if (!name) return;
  project_.mss_folder = FolderOfPath(*name);
  files_.LoadMeasureFile(*name, true, [this, name = *name] {
    SetDefaultHeader(name);
    display_.Form_Resize();
  });
}

void FileCommands::mnuSaveMeasure() {
  const auto name = dialogs().SaveFile({.filter = kMeasurements,
                                        .file_name = NameOfToday("-00.mss"),
                                        .folder = project_.mss_folder,
                                        .extension = "mss",
                                        .confirm_overwrite = true});
  if (!name) return;
  project_.mss_folder = FolderOfPath(*name);
  files_.SaveMeasureFile(*name, true, false, [this, name = *name] { SetDefaultHeader(name); });
}

void FileCommands::mnuExport() {
  const auto name = dialogs().SaveFile({.title = "Export measurement data",
                                        .filter = kTable,
                                        .file_name = NameOfToday("-00.txt"),
                                        .folder = project_.mss_folder,
                                        .extension = "txt"});
  if (!name) return;
  if (MayHaveFile(graph_.platform().files(), *name)) {
    // The title is that of another command; users know it so.
    const Answer answer = dialogs().MessageBox({.text = "File exists, overwrite",
                                                .title = "Save properties",
                                                .icon = Icon::kExclamation,
                                                .buttons = Buttons::kOkCancel});
    if (answer != Answer::kOk) return;
  }
  files_.ExportMeasureFile(*name);
}

// --- Properties ----------------------------------------------------------------------------------

void FileCommands::mnuOpenProperties() {
  const auto name = dialogs().OpenFile({.filter = kProperties, .folder = project_.grp_folder});
  if (!name) return;
  project_.grp_folder = FolderOfPath(*name);
  OpenProperties(*name);
}

void FileCommands::OpenProperties(const std::string& FileName) {
  files_.LoadMeasureFile(FileName, false, [this] { display_.Form_Resize(); });
}

void FileCommands::mnuSaveProperties() {
  const auto name = dialogs().SaveFile({.filter = kProperties,
                                        .file_name = "Graph.grp",
                                        .folder = project_.grp_folder,
                                        .extension = "grp",
                                        .confirm_overwrite = true});
  if (!name) return;
  project_.grp_folder = FolderOfPath(*name);
  files_.SaveMeasureFile(*name, false, false, [this, name = *name] { OfferToAdd(name); });
}

void FileCommands::OfferToAdd(const std::string& FileName) {
  if (!project_.HasFile || project_.HasFile(FileName)) return;
  const Answer answer = dialogs().MessageBox({.text = "Add file to project?",
                                              .title = "Save properties",
                                              .icon = Icon::kQuestion,
                                              .buttons = Buttons::kYesNo});
  if (answer == Answer::kYes && project_.AddFile) project_.AddFile(FileName);
}

// --- Automatic saving ----------------------------------------------------------------------------

void FileCommands::mnuAutoSave() {
  if (menu_.mnuAutoSave.Checked) {
    menu_.mnuAutoSave.Checked = false;
    graph_.AutoSaveTimer->SetEnabled(false);
    return;
  }
  StartAutoSave();
}

// A folder that is gone leaves the entry unchecked; the timer looks at that.
void FileCommands::StartAutoSave() {
  const auto folder = dialogs().PickFolder("Select directory for auto save", project_.mss_folder);
  if (!folder) return;
  graph_.Data.AutoSaveDir = JoinPath(*folder, "");
  menu_.mnuAutoSave.Checked = HasFolder(graph_.platform().files(), *folder);
  graph_.Data.AutoSaveDay = std::floor(graph_.Now());
  graph_.AutoSaveTimer->SetInterval(kAutoSaveTick);
  graph_.AutoSaveTimer->SetEnabled(true);
}

// --- Printing ------------------------------------------------------------------------------------

void FileCommands::mnuPrint() {
  const auto header = dialogs().InputBox("Enter header text:", "Print", printer_.HeaderText);
  printer_.HeaderText = header.value_or("");
  printer_.PrintGraph(project_.mss_folder);
}

}  // namespace tarnlink
