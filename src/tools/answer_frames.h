// Finds the answer of a slave in what comes in behind a request of 16 bytes, and says how far it
// can be trusted to be the only one.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tarnlink {

enum class AnswerKind {
  kNone,     // nothing yet: only what some adapters send back of a request, or a part
  kGood,     // a frame whose check holds
  kCorrupt,  // one that begins and ends as a frame does, but whose check does not hold
  kTorn,     // bytes too many or too few: the next answer would be torn as well
};

// Whether the check digits, of either case, have the value that the body says. Digits that are none
// are no value.
bool HasGoodCheck(std::string_view frame);

// Whether the answer is that of this slave. One that says that the request was damaged need not
// know whom it was for.
bool IsFrom(std::string_view answer, std::string_view slave);

class AnswerFrames {
 public:
  // A request goes out: what came before it counts no more.
  void Clear() { rest_.clear(); }

  AnswerKind Take(std::string_view bytes);
  // A master's sound request, ours that an adapter sends back or another's.
  std::function<void(std::string_view frame)> HeardRequest;

  // Of the answer that was taken last; the check digits of a sound one in upper case.
  const std::string& frame() const { return frame_; }
  // More came than one answer, so that more may be on its way; or it does not look as a frame does.
  bool IsDoubtful() const { return is_doubtful_; }
  // How many bytes are missing before there can be an answer.
  int Missing() const;

 private:
  std::string rest_;
  std::string frame_;
  bool is_doubtful_ = false;
};

}  // namespace tarnlink
