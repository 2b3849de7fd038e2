#include "monitor/project_files.h"

#include "common/paths.h"
#include "common/text.h"
#include "files/project_file.h"
#include "monitor/project_paths.h"
#include "monitor/tool_commands.h"
#include "platform/path_resolver.h"

namespace tarnlink {

// What one of the add commands asks for. A group that holds one file has the words that refuse a
// second.
struct ProjectFiles::Kind {
  const char* group;
  const char* filter;
  std::string folder;
  const char* refusal = nullptr;
};

ProjectFiles::ProjectFiles(frm_Main& main, ProjectCommands& project, ScreenCommands& screen,
                           MemoryMap& map)
    : main_(main), project_(project), screen_(screen), map_(map) {
  BindAddCommands();
  main_.mnuAddNecMap.Click = [this] { mnuAddNecMap(); };
  main_.mnuRefresh.Click = [this] { mnuRefresh(); };
  main_.form.FileDropped = [this](const std::string& path) { AddDroppedFile(path); };
  main_.trvProject_FilesDropped = [this](const std::vector<std::string>& paths) {
    for (const std::string& path : paths) AddDroppedFile(path);
  };
  main_.trvProject_DblClick = [this](const std::string& key) { OpenNode(key); };
  main_.trvProject_DeleteKey = [this](const std::string& key) { RemoveNode(key); };
}

// --- The menu ------------------------------------------------------------------------------------

void ProjectFiles::BindAddCommands() {
  main_.mnuAddTarnLinkFile.Click = [this] {
    AddByDialog({"wcr", "Windows Tarnlink Screens (*.wcr)|*.wcr", main_.WcrCmnDlg.InitDir});
  };
  main_.mnuAddParameterFile.Click = [this] {
    AddByDialog({"par", "Parameter File (*.par)|*.par", main_.ParCmnDlg.InitDir});
  };
  main_.mnuAddGraphFile.Click = [this] {
    AddByDialog({"grp", "Graphic Properties (*.grp)|*.grp", main_.GrpCmnDlg.InitDir});
  };
  main_.mnuAddErrorDiscr.Click = [this] {
    AddByDialog({"erc", "Error Discription File (*.erc)|*.erc", "C:\\",
                 "First remove the current error description file from project."});
  };
  main_.mnuAddIDFile.Click = [this] {
    AddByDialog(
        {"ids", "ID File (*.ids)|*.ids", "C:\\", "First remove the current ID file from project."});
  };
}

void ProjectFiles::AddByDialog(const Kind& kind) {
  if (kind.refusal != nullptr && Has(kind.group)) return Say(kind.refusal, kProgramTitle);
  const auto path = main_.platform().dialogs().OpenFile(
      {.title = "Open",
       .filter = kind.filter,
       .folder = UsableFolder(kind.folder, main_.platform().files()),
       .extension = kind.group});
  if (!path || path->empty()) return;
  if (GroupOfEntry(*path) != kind.group) {
    return Say("\"" + StripFileFromPath(*path) +
                   "\" cannot stand in a project: its extension must be \"" + kind.group +
                   "\", in small letters.",
               kProgramTitle);
  }
  if (!AddTo(kind.group, *path)) return;
  if (std::string_view(kind.group) == "ids" && main_.ReadIDItems) main_.ReadIDItems(*path);
}

void ProjectFiles::mnuAddNecMap() {
  if (Has("lst")) {
    return Say("First remove the current Memory Map file from project.", kProgramTitle);
  }
  const auto path = main_.platform().dialogs().OpenFile(
      {.title = "Open", .filter = "Memory Layout (*.map;*.lst)|*.map;*.lst", .folder = "."});
  if (!path || path->empty()) return;
  if (CheckMapFileType(main_.platform().files(), *path) == kUnknownMap) {
    return Say("Unkonwn map file.", kProgramTitle);
  }
  if (AddTo("lst", *path)) map_.LoadClass7(*path);
}

// The Locations keep their addresses until the screen is opened again.
void ProjectFiles::mnuRefresh() {
  const auto file = main_.trvProject.FirstChild("lst");
  if (!file) return Say("No Memory Map file in this project.", kProgramTitle);
  map_.LoadClass7(FoundFile(main_, *file));
}

bool ProjectFiles::AddTo(const std::string& group, const std::string& path) {
  if (main_.trvProject.AddFileToProject(group, path)) {
    main_.ProjectChanged = true;
    return true;
  }
  const bool is_there = main_.trvProject.HasNode(path);
  Say("\"" + StripFileFromPath(path) + "\" " +
          (is_there ? "stands in the project already." : "has no group in this project."),
      kProgramTitle);
  return false;
}

void ProjectFiles::Say(const std::string& text, std::string_view title) {
  main_.platform().dialogs().MessageBox(
      {.text = text, .title = std::string(title), .icon = Icon::kExclamation});
}

// --- Files from the desktop ----------------------------------------------------------------------

void ProjectFiles::AddDroppedFile(const std::string& path) {
  const std::string kind = ToLower(Right(path, 3));
  if (kind == "wcr" || kind == "par" || kind == "grp") {
    AddTo(kind, path);
  } else if (kind == "lst" || kind == "map") {
    if (!Has("lst") && AddTo("lst", path)) map_.Load(path);
  } else if (kind == "erc") {
    if (Has("erc")) {
      return Say("First remove the current error description file from project.", kProgramTitle);
    }
    AddTo("erc", path);
  } else if (kind == "ids") {
    if (Has("ids")) return Say("First remove the current id file from project.", kProgramTitle);
    if (AddTo("ids", path) && main_.ReadIDItems) main_.ReadIDItems(path);
  } else if (kind == "prj") {
    if (project_.OfferToSaveProject()) project_.ReadProject(path);
  } else {
    Say("Unknown file type.", kQuestionTitle);
  }
}

// --- The tree ------------------------------------------------------------------------------------

void ProjectFiles::OpenNode(const std::string& key) {
  const ProjectNode* node = main_.trvProject.Find(key);
  if (node == nullptr || node->parent.empty() || node->parent == ProjectTree::kRoot) return;
  const std::string path = FoundFile(main_, key);
  if (!MayHaveFile(main_.platform().files(), path)) {
    main_.platform().dialogs().MessageBox({.text = "The file : " + key + " does not exist",
                                           .title = "File Error",
                                           .icon = Icon::kCritical});
    return;
  }
  OpenFile(key, path);
}

void ProjectFiles::OpenFile(const std::string& key, const std::string& path) {
  const std::string kind = ToUpper(StripExtFromPath(key));
  if (kind == "WCR") {
    if (screen_.OfferToSave()) screen_.OpenTarnLinkFileBuildScreen(path);
  } else if (kind == "PAR") {
    OpenForTool(main_.ParameterFile, path, main_.ShowParameters);
  } else if (kind == "GRP") {
    OpenForTool(main_.GraphicFile, path, main_.ShowGraphic);
  } else if (kind == "LST" || kind == "ERC" || kind == "IDS") {
    main_.platform().dialogs().MessageBox(
        {.text = "Use delete key to remove file / Project menu to add files.",
         .title = std::string(kProgramTitle),
         .icon = Icon::kInformation});
  }
}

void ProjectFiles::OpenForTool(std::string& field, const std::string& path,
                               const std::function<void()>& show) {
  field = path;
  OpenTool(main_, show);
}

// Any node can go, a group too; without it no file of its kind can be added until a project is
// begun or opened.
void ProjectFiles::RemoveNode(const std::string& key) {
  const ProjectNode* node = main_.trvProject.Find(key);
  if (node == nullptr) return;
  const Answer answer = main_.platform().dialogs().MessageBox(
      {.text = "Are you sure you want to delete : " + node->text + "?",
       .title = "Confirm Delete",
       .buttons = Buttons::kOkCancel});
  if (answer != Answer::kOk) return;
  main_.trvProject.Remove(key);
  main_.ProjectChanged = true;
}

}  // namespace tarnlink
