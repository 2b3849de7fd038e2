// The names of the controller's data IDs and the texts of its error codes.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "files/error_texts.h"
#include "files/id_file.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"

namespace tarnlink {

class IdNames {
 public:
  // Becomes `ReadIDItems` of the main form. Both outlive it.
  IdNames(frm_Main& main, const frm_Options& options);

  // A file that is bad leaves no names; `lbl_IdNotice` then says why. Never throws.
  void ReadIDItems(const std::string& FileName);

  const std::vector<IDItem>& items() const { return file_.items; }
  const std::string& IDRevision() const { return file_.IDRevision; }

  // Reads the error description of the project or, without one, the file beside the ID file of the
  // options, which need not be there. What was read before a bad line stays; the notice tells of
  // it. Never throws.
  void LoadErrorTexts();
  const ErrorTexts& error_texts() const { return error_texts_; }

  // The names are others now; the settings dialog hooks in here.
  std::function<void()> Changed;

 private:
  std::string ErrorFilePath() const;
  // The text of a file, or nothing after the notice has said why.
  std::optional<std::string> Text(const std::string& path, std::string& notice);
  static std::string Sentence(const std::string& path, const BadLine& failure);
  void ShowNotices();

  frm_Main& main_;
  const frm_Options& options_;
  IdFile file_;
  ErrorTexts error_texts_;
  std::string id_notice_;
  std::string error_notice_;
};

}  // namespace tarnlink
