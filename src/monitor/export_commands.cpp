#include "monitor/export_commands.h"

#include <vector>

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/screen_export.h"
#include "monitor/file_error_box.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

constexpr const char* kExportTitle = "Export to DOC";

// The screen's path with its last three characters made "doc".
std::string ProposedName(const std::string& path) {
  constexpr int kShortest = 5;
  constexpr int kReplaced = 3;
  if (CharacterCount(StripFileFromPath(path)) < kShortest) return "export.doc";
  return std::string(FirstCharacters(path, CharacterCount(path) - kReplaced)) + "doc";
}

// Beside the screen; a new screen has no place of its own yet.
std::string ProposedFolder(const frm_Main& main, const Files& files) {
  const std::string& path = main.CurrentTarnLinkFile;
  return path.empty() ? UsableFolder(main.WcrCmnDlg.InitDir, files) : FolderOf(path, files);
}

// The Locations that stand on the screen, in the order of their indices.
std::vector<ExportRow> ShownValues(const frm_Main& main) {
  std::vector<ExportRow> rows;
  for (int i = 1; i <= main.MaxId; ++i) {
    const TextBox& name = main.RAM_LOC_TEXT(i);
    if (name.Visible) rows.push_back({name.Text, main.RAM_LOC_VAL(i).Text});
  }
  return rows;
}

}  // namespace

ExportCommands::ExportCommands(frm_Main& main) : main_(main) {
  main_.mnuPrintToFile.Click = [this] { mnuPrintToFile(); };
}

void ExportCommands::mnuPrintToFile() {
  const auto path = main_.platform().dialogs().SaveFile(
      {.title = "Doc file",
       .filter = "Document File (*.doc)|*.doc",
       .file_name = ProposedName(main_.CurrentTarnLinkFile),
       .folder = ProposedFolder(main_, main_.platform().files()),
       .extension = "doc",
       .confirm_overwrite = false});
  if (!path || path->empty()) return;
  if (MayHaveFile(main_.platform().files(), *path) && !MayOverwrite()) return;
  ExportScreen(*path);
}

bool ExportCommands::MayOverwrite() {
  const Answer answer = main_.platform().dialogs().MessageBox({.text = "File exists, overwrite",
                                                               .title = kExportTitle,
                                                               .icon = Icon::kQuestion,
                                                               .buttons = Buttons::kYesNo});
  return answer == Answer::kYes;
}

void ExportCommands::ExportScreen(const std::string& FileName) {
  const auto header = main_.platform().dialogs().InputBox("Enter header text:", kExportTitle, "");
  try {
    main_.platform().files().WriteWhole(FileName, EncodeText(Report(header.value_or(""))));
  } catch (const RunTimeError& error) {
    ReportFileError(main_.platform().dialogs(), error, "During saving doc file ", FileName);
  }
}

std::string ExportCommands::Report(const std::string& header) const {
  Platform& platform = main_.platform();
  return WriteScreenExport(main_.CurrentTarnLinkFile,
                           ExportMoment(platform.clock().Now(), platform.locale().Months()), header,
                           ShownValues(main_));
}

}  // namespace tarnlink
