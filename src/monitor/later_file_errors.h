// Tells of files that could not be written once the routine that met the error has returned: a box
// inside an exchange would hold the run up until somebody answers it.
#pragma once

#include <deque>
#include <memory>
#include <string>

#include "common/run_time_error.h"
#include "platform/platform.h"
#include "platform/timer.h"

namespace tarnlink {

class LaterFileErrors {
 public:
  // `doing` as for ReportFileError. `platform` outlives it.
  LaterFileErrors(Platform& platform, std::string doing);

  // Each error has a box of its own, one after the other.
  void Tell(const RunTimeError& error, const std::string& path);

 private:
  struct Failure {
    RunTimeError error;
    std::string path;
  };

  void TellAll();

  Platform& platform_;
  std::string doing_;
  std::deque<Failure> untold_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace tarnlink
