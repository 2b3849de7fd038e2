// Run-time errors: failures that carry a number, which the messages to the user show.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnlink {

// The numbers that the system's messages know.
enum ErrorCode : int {
  kOverflow = 6,
  kSubscript = 9,
  kDivisionByZero = 11,
  kTypeMismatch = 13,
  kFileNotFound = 53,
  kDeviceIo = 57,
  kDiskFull = 61,
  kPastEndOfFile = 62,
  kPermissionDenied = 70,
  kPathNotFound = 76,
  kFontRefused = 380,
  kPortUnavailable = 8005,
  kDialogCancelled = 32755,
};

// `code` is what a message box shows; `what()` is one plain sentence for people, without the code,
// that names the file or device and the reason. It may be empty where the code says it all.
class RunTimeError : public std::runtime_error {
 public:
  explicit RunTimeError(int code, const std::string& reason = {})
      : std::runtime_error(reason), code_(code) {}

  int code() const { return code_; }

 private:
  int code_;
};

// What the user reads of an error that has no text of its own; spelt as the users know it.
inline std::string SystemErrorText(int code) {
  return "Internal System Error # " + std::to_string(code) +
         " occured, please contact distributor.";
}

}  // namespace tarnlink
