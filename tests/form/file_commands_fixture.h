// The graph and a user of the entries of its menu that open, save, export and print.
#pragma once

#include <functional>
#include <set>
#include <string>

#include "form/measure_files_fixture.h"
#include "unit/measure_store.h"

namespace tarnlink {

inline constexpr const char* kFolder = "/home/user/measured";
inline constexpr const char* kLines = "/home/user/measured/boiler.grp";

class GraphFileCommands : public MeasureFilesTest {
 protected:
  GraphFileCommands() {
    files.DrawAgain = [this] { all.display.DrawAgain(); };
    project.HasFile = [this](const std::string& name) { return project_files.contains(name); };
    project.AddFile = [this](const std::string& name) { added += name; };
    all.printer.HeaderText = "before";
    graph.Data.AutoSaveDir = "none";
    drawn = 0;
  }

  // --- The user: `expect` says which boxes follow the dialog ---

  using Expect = std::function<void()>;
  void OpenMeasurements(const std::string& name, const Expect& expect = {}) {
    world.dialogs().ExpectOpenFile().Give(name);
    Press(menu.mnuOpenMeasure, expect);
  }
  void OpenProperties(const std::string& name, const Expect& expect = {}) {
    world.dialogs().ExpectOpenFile().Give(name);
    Press(menu.mnuOpenProperties, expect);
  }
  void SaveMeasurements(const std::string& name, const Expect& expect = {}) {
    world.dialogs().ExpectSaveFile().Give(name);
    Press(menu.mnuSaveMeasure, expect);
  }
  void SaveProperties(const std::string& name, const Expect& expect = {}) {
    world.dialogs().ExpectSaveFile().Give(name);
    Press(menu.mnuSaveProperties, expect);
  }
  void ExportAs(const std::string& name, const Expect& expect = {}) {
    world.dialogs().ExpectSaveFile("Export measurement data").Give(name);
    Press(menu.mnuExport, expect);
  }
  void AutoSaveIn(const std::string& folder) {
    world.dialogs().ExpectFolder("Select directory for auto save").Give(folder);
    menu.mnuAutoSave.Press();
  }
  ScriptedDialog& ExpectAddToProject() {
    return world.dialogs().ExpectMessageBox({.text = "Add file to project?",
                                             .title = "Save properties",
                                             .icon = Icon::kQuestion,
                                             .buttons = Buttons::kYesNo});
  }
  ScriptedDialog& ExpectOverwrite() {
    return world.dialogs().ExpectMessageBox({.text = "File exists, overwrite",
                                             .title = "Save properties",
                                             .icon = Icon::kExclamation,
                                             .buttons = Buttons::kOkCancel});
  }

  // --- What can be seen ---

  // What the last file dialog was asked with: "filter; name; folder; extension", with a "!" behind
  // if it asks about an old file itself.
  std::string Asked() {
    const FileDialogRequest& asked = world.dialogs().last_file_request();
    return asked.filter + "; " + asked.file_name + "; " + asked.folder + "; " + asked.extension +
           (asked.confirm_overwrite ? "!" : "");
  }
  const std::string& Header() const { return all.printer.HeaderText; }
  std::string HeaderOf(const std::string& name) {
    all.file_commands.SetDefaultHeader(name);
    return Header();
  }
  // All that a command could change, but for the times of the view.
  std::string Everything() {
    std::string text = State() + ", header " + Header() + ", folders " + mss_folder + " " +
                       grp_folder + ", auto save " + (menu.mnuAutoSave.Checked ? "on" : "off") +
                       (graph.AutoSaveTimer->Enabled() ? " ticks " : " rests ") +
                       graph.Data.AutoSaveDir + ", drawn " + std::to_string(drawn) + "\n" +
                       world.disk().Describe();
    return text + FileText(graph.Data);
  }

  std::set<std::string> project_files;
  std::string added;  // to the project

 private:
  static void Press(MenuEntry& entry, const Expect& expect) {
    if (expect) expect();
    entry.Press();
  }
};

}  // namespace tarnlink
