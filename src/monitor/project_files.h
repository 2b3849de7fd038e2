// The single files of a project: adding them by the menu or by a drop, opening them with a double
// click, removing them.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "monitor/frm_main.h"
#include "monitor/memory_map.h"
#include "monitor/project_commands.h"
#include "monitor/screen_commands.h"

namespace tarnlink {

class ProjectFiles {
 public:
  // Binds the entries and the tree. All outlive it.
  ProjectFiles(frm_Main& main, ProjectCommands& project, ScreenCommands& screen, MemoryMap& map);

  // A file goes to the group of its extension. A group that holds one file refuses a second, and so
  // does the project a file that it has. A project is opened.
  void AddDroppedFile(const std::string& path);

  // The double click on a node, and the delete key.
  void OpenNode(const std::string& key);
  void RemoveNode(const std::string& key);

 private:
  struct Kind;

  void BindAddCommands();
  void AddByDialog(const Kind& kind);
  void mnuAddNecMap();
  void mnuRefresh();
  bool AddTo(const std::string& group, const std::string& path);
  void OpenFile(const std::string& key, const std::string& path);
  void OpenForTool(std::string& field, const std::string& path, const std::function<void()>& show);
  bool Has(const char* group) const { return main_.trvProject.FirstChild(group).has_value(); }
  void Say(const std::string& text, std::string_view title);

  frm_Main& main_;
  ProjectCommands& project_;
  ScreenCommands& screen_;
  MemoryMap& map_;
};

}  // namespace tarnlink
