#include "monitor/project_commands.h"

#include "common/numbers.h"
#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_file.h"
#include "monitor/file_error_box.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

// One quoted entry a line, groups too, in tree order.
std::string ProjectText(const ProjectTree& tree) {
  std::string text;
  for (const ProjectNode& node : tree.Nodes()) {
    text += '"';
    text += node.key;
    text += '"';
    text += kLineEnd;
  }
  return text;
}

}  // namespace

ProjectCommands::ProjectCommands(frm_Main& main) : main_(main) {
  main_.mnuViewProjectWindow.Click = [this] { mnuViewProjectWindow(); };
  main_.Toolbar1(5).Click = [this] { mnuViewProjectWindow(); };
  main_.mnuSaveProject.Click = [this] { mnuSaveProject(); };
  main_.form.FileDropped = [this](const std::string& path) { AddDroppedFile(path); };
}

void ProjectCommands::mnuViewProjectWindow() {
  main_.sstProject.Visible = !main_.sstProject.Visible.get();
  main_.mnuViewProjectWindow.Checked = main_.sstProject.Visible.get();
}

void ProjectCommands::mnuSaveProject() {
  const auto path = main_.platform().dialogs().SaveFile(
      {.title = "Save As",
       .filter = "Project Files (*.prj)|*.prj",
       .file_name = main_.trvProject.RootText(),
       .folder = UsableFolder(main_.PrjCmnDlg.InitDir, main_.platform().files()),
       .extension = "prj",
       .confirm_overwrite = true});
  if (!path || path->empty()) return;
  try {
    main_.platform().files().WriteWhole(*path, EncodeText(ProjectText(main_.trvProject)));
  } catch (const RunTimeError& error) {
    ReportFileError(main_.platform().dialogs(), error, "During saving prj file ", *path);
    return;
  }
  main_.trvProject.SetRootText(StripFileFromPath(*path));
  main_.PrjCmnDlg.InitDir = FolderOfPath(*path);
  main_.ProjectChanged = false;
  main_.LoadShortCutsPrj(*path);
}

bool ProjectCommands::AddTo(const std::string& group, const std::string& path) {
  const bool added = main_.trvProject.AddFileToProject(group, path);
  if (added) main_.ProjectChanged = true;
  return added;
}

void ProjectCommands::Say(const std::string& text, std::string_view title) {
  main_.platform().dialogs().MessageBox(
      {.text = text, .title = std::string(title), .icon = Icon::kExclamation});
}

void ProjectCommands::AddDroppedFile(const std::string& path) {
  const std::string kind = ToLower(Right(path, 3));
  const auto has_one = [this](const char* group) {
    return main_.trvProject.FirstChild(group).has_value();
  };
  if (kind == "wcr" || kind == "par" || kind == "grp") {
    AddTo(kind, path);
  } else if (kind == "lst" || kind == "map") {
    if (!has_one("lst") && AddTo("lst", path) && main_.LoadClass7) main_.LoadClass7(path);
  } else if (kind == "erc") {
    if (has_one("erc"))
      return Say("First remove the current error description file from project.", kProgramTitle);
    AddTo("erc", path);
  } else if (kind == "ids") {
    if (has_one("ids")) return Say("First remove the current id file from project.", kProgramTitle);
    if (AddTo("ids", path) && main_.ReadIDItems) main_.ReadIDItems(path);
  } else if (kind == "prj") {
    Say("This version cannot open projects yet.", kProgramTitle);
  } else {
    Say("Unknown file type.", kQuestionTitle);
  }
}

}  // namespace tarnlink
