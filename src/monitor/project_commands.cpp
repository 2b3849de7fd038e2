#include "monitor/project_commands.h"

#include "common/numbers.h"
#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text_file.h"
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
    main_.platform().dialogs().MessageBox(
        {.text = SystemErrorText(error.code()) + "\r\nDuring saving prj file " + *path,
         .title = "Internal System Error",
         .icon = Icon::kCritical,
         .detail = error.what()});
    return;
  }
  main_.trvProject.SetRootText(StripFileFromPath(*path));
  main_.PrjCmnDlg.InitDir = FolderOfPath(*path);
  main_.ProjectChanged = false;
  main_.LoadShortCutsPrj(*path);
}

}  // namespace tarnlink
