#include "monitor/later_file_errors.h"

#include <utility>

#include "monitor/file_error_box.h"

namespace tarnlink {

namespace {

constexpr int kSoon = 1;  // ms

}  // namespace

LaterFileErrors::LaterFileErrors(Platform& platform, std::string doing)
    : platform_(platform), doing_(std::move(doing)), timer_(platform.CreateTimer()) {
  timer_->SetInterval(kSoon);
  timer_->SetOnTimer([this] { TellAll(); });
}

void LaterFileErrors::Tell(const RunTimeError& error, const std::string& path) {
  untold_.push_back({error, path});
  timer_->SetEnabled(true);
}

// What comes in behind a box stands in its turn.
void LaterFileErrors::TellAll() {
  while (!untold_.empty()) {
    const Failure failure = untold_.front();
    untold_.pop_front();
    ReportFileError(platform_.dialogs(), failure.error, doing_, failure.path);
  }
  timer_->SetEnabled(false);
}

}  // namespace tarnlink
