#include "monitor/id_names.h"

#include <algorithm>
#include <utility>

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text_file.h"
#include "monitor/project_paths.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

constexpr std::size_t kExtensionLength = 3;

}  // namespace

IdNames::IdNames(frm_Main& main, const frm_Options& options) : main_(main), options_(options) {
  main_.ReadIDItems = [this](const std::string& path) { ReadIDItems(path); };
}

void IdNames::ReadIDItems(const std::string& FileName) {
  const std::string path = UsableFile(FileName, main_.platform().files());
  id_notice_.clear();
  file_ = {};
  // Without a path no names are wanted.
  const auto text = path.empty() ? std::nullopt : Text(path, id_notice_);
  if (text) file_ = ReadIdFile(*text);
  if (file_.failure) id_notice_ = Sentence(path, *file_.failure);
  ShowNotices();
  if (Changed) Changed();
}

void IdNames::LoadErrorTexts() {
  const std::string path = UsableFile(ErrorFilePath(), main_.platform().files());
  error_notice_.clear();
  error_texts_ = {};
  const bool is_wanted = main_.trvProject.FirstChild("erc").has_value();
  if (is_wanted || HasFile(main_.platform().files(), path)) {
    const auto text = Text(path, error_notice_);
    if (text) {
      ErrorFile file = ReadErrorFile(*text);
      error_texts_ = std::move(file.texts);
      if (file.failure) error_notice_ = Sentence(path, *file.failure);
    }
  }
  ShowNotices();
}

// It sits beside the ID file, with the same name.
std::string IdNames::ErrorFilePath() const {
  std::string path = options_.txt_ZOLTIDDef.Text;
  path.resize(path.size() - std::min(path.size(), kExtensionLength));
  return FileOfGroup(main_, "erc", path + "erc");
}

std::optional<std::string> IdNames::Text(const std::string& path, std::string& notice) {
  try {
    return DecodeText(main_.platform().files().ReadWhole(path));
  } catch (const RunTimeError& error) {
    notice = error.what();
    return std::nullopt;
  }
}

std::string IdNames::Sentence(const std::string& path, const BadLine& failure) {
  std::string text = StripFileFromPath(path);
  if (failure.line > 0) text += ", line " + std::to_string(failure.line);
  return text + ": " + failure.reason;
}

void IdNames::ShowNotices() {
  const bool are_both = !id_notice_.empty() && !error_notice_.empty();
  frm_Main::ShowNotice(main_.lbl_IdNotice, id_notice_ + (are_both ? "   " : "") + error_notice_);
}

}  // namespace tarnlink
