#include "monitor/id_names.h"

#include <algorithm>
#include <utility>

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text_file.h"
#include "monitor/project_paths.h"

namespace tarnlink {

namespace {

constexpr std::size_t kExtensionLength = 3;

}  // namespace

IdNames::IdNames(frm_Main& main, const frm_Options& options) : main_(main), options_(options) {
  main_.ReadIDItems = [this](const std::string& path) { ReadIDItems(path); };
}

void IdNames::ReadIDItems(const std::string& FileName) {
  const std::string path = FoundFile(main_, FileName);
  frm_Main::ShowNotice(main_.lbl_IdNotice, "");
  file_ = {};
  // Without a path no names are wanted.
  const auto text = path.empty() ? std::nullopt : Text(path);
  if (text) file_ = ReadIdFile(*text);
  if (file_.failure) Notice(path, *file_.failure);
  if (Changed) Changed();
}

void IdNames::LoadErrorTexts() {
  const std::string path = FoundFile(main_, ErrorFilePath());
  error_texts_ = {};
  const bool is_wanted = main_.trvProject.FirstChild("erc").has_value();
  if (!is_wanted && !main_.platform().files().Exists(path)) return;
  const auto text = Text(path);
  if (!text) return;
  ErrorFile file = ReadErrorFile(*text);
  error_texts_ = std::move(file.texts);
  if (file.failure) Notice(path, *file.failure);
}

// It sits beside the ID file, with the same name.
std::string IdNames::ErrorFilePath() const {
  if (const auto of_project = main_.trvProject.FirstChild("erc")) return *of_project;
  std::string path = options_.txt_ZOLTIDDef.Text;
  path.resize(path.size() - std::min(path.size(), kExtensionLength));
  return path + "erc";
}

std::optional<std::string> IdNames::Text(const std::string& path) {
  try {
    return DecodeText(main_.platform().files().ReadWhole(path));
  } catch (const RunTimeError& error) {
    frm_Main::ShowNotice(main_.lbl_IdNotice, error.what());
    return std::nullopt;
  }
}

void IdNames::Notice(const std::string& path, const BadLine& failure) {
  std::string text = StripFileFromPath(path);
  if (failure.line > 0) text += ", line " + std::to_string(failure.line);
  frm_Main::ShowNotice(main_.lbl_IdNotice, text + ": " + failure.reason);
}

}  // namespace tarnlink
