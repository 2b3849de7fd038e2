#include "monitor/frm_gen_par_file.h"

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "monitor/file_error_box.h"
#include "monitor/project_paths.h"
#include "platform/path_resolver.h"

namespace tarnlink {

frmGenParFile::frmGenParFile(frm_Main& main) : main_(main) {
  form.Visible = false;
  main_.mnuGenParaFile.Click = [this] { Show(); };
  for (CheckBox* box : {&chkClass5, &chkClass7EE, &chkClass7RAM}) {
    box->Click = [this] { ShowCount(); };
  }
  cmdSave.Click = [this] { Save(); };
  cmdCancel.Click = [this] { Hide(); };
}

void frmGenParFile::Show() {
  ShowCount();
  form.Visible = true;
}

ParameterSelection frmGenParFile::Selection() const {
  return {chkClass5.Value, chkClass7EE.Value, chkClass7RAM.Value};
}

void frmGenParFile::ShowCount() {
  const ParameterCount count = CountParameters(main_, Selection());
  const std::string all =
      std::to_string(count.all) + " of " + std::to_string(main_.LocationCount) + " locations go in";
  const std::string binary = std::to_string(count.binary);
  lblCount.Caption = count.binary == 0 ? all : all + ", " + binary + " of them binary, as 0";
}

std::string frmGenParFile::DefaultName() const {
  constexpr int kExtension = 4;  // with its dot
  const std::string& screen = main_.CurrentTarnLinkFile;
  const int count = CharacterCount(screen);
  if (count <= kExtension) return "Para.par";
  return std::string(FirstCharacters(screen, count - kExtension)) + ".par";
}

void frmGenParFile::Save() {
  CommonDialog& dialog = main_.ParCmnDlg;
  Platform& platform = main_.platform();
  dialog.FileName = DefaultName();
  const auto path =
      platform.dialogs().SaveFile({.title = "Save As",
                                   .filter = "Parameter File (*.par)|*.par",
                                   .file_name = dialog.FileName,
                                   .folder = UsableFolder(dialog.InitDir, platform.files()),
                                   .extension = "par",
                                   .confirm_overwrite = true});
  if (!path || path->empty()) return;
  dialog.InitDir = FolderOfPath(*path);
  dialog.FileName = *path;
  try {
    GenParameterFile(main_, Selection(), *path);
  } catch (const RunTimeError& error) {
    ReportFileError(platform.dialogs(), error, "During saving par file ", *path);
    return;
  }
  OfferToAddToProject(*path);
  Hide();
}

void frmGenParFile::OfferToAddToProject(const std::string& path) {
  if (HoldsFile(main_, path)) return;
  const Answer answer = main_.platform().dialogs().MessageBox({.text = "Add file to project?",
                                                               .title = std::string(kQuestionTitle),
                                                               .icon = Icon::kQuestion,
                                                               .buttons = Buttons::kYesNo});
  if (answer == Answer::kYes) AddSavedFile(main_, "par", path);
}

}  // namespace tarnlink
