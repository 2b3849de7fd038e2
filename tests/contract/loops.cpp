#include "contract/loops.h"

#include "common/run_time_error.h"

namespace tarnlink {

int ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RunTimeError& error) {
    return error.code();
  }
  return 0;
}

std::string ReasonOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RunTimeError& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace tarnlink
