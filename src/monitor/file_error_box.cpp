#include "monitor/file_error_box.h"

namespace tarnlink {

void ReportFileError(Dialogs& dialogs, const RunTimeError& error, const std::string& doing,
                     const std::string& path) {
  dialogs.MessageBox({.text = SystemErrorText(error.code()) + "\r\n" + doing + path,
                      .title = "Internal System Error",
                      .icon = Icon::kCritical,
                      .detail = error.what()});
}

}  // namespace tarnlink
