// The box that tells of a file, or a Location, that could not be read or written.
#pragma once

#include <string>

#include "common/run_time_error.h"
#include "platform/dialogs.h"

namespace tarnlink {

// `doing` is what failed, with a blank at its end: "During saving wcr file ".
void ReportFileError(Dialogs& dialogs, const RunTimeError& error, const std::string& doing,
                     const std::string& path);

}  // namespace tarnlink
