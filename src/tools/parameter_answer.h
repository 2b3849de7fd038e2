// What a slave's answer to a parameter that was written, or read back, means.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "files/parameter_file.h"
#include "protocols/zolt_message.h"

namespace tarnlink {

// One message of the parameter writer, and what makes an answer one to it.
struct ParameterRequest {
  ParameterItem item;
  bool is_write = false;
  std::string frame;
};

// Without an alias of its page a byte of memory cannot be: it would be a write to something else.
bool CanBeWritten(const ParameterItem& item);

// The low byte of a class 7 item; of a page that can not be written no message is made and the
// frame is empty. `slave`: its first character goes out.
ParameterRequest MakeParameterRequest(const ParameterItem& item, bool is_write,
                                      std::string_view slave, ZoltMessages& messages);

enum class ParameterOutcome {
  kNext,      // done with it
  kVerified,  // and what the slave holds is what was asked for
  kRetry,
  kUnusable,  // no answer to it at all: tried again as well
  kGiveUp,
};

struct ParameterVerdict {
  const char* word = "";  // for the list
  ParameterOutcome outcome = ParameterOutcome::kRetry;
};

inline constexpr ParameterVerdict kUnusableAnswer{"error", ParameterOutcome::kUnusable};

// Whether a sound answer is about this request. One that says that the request was damaged always
// is.
bool IsAbout(std::string_view answer, const ParameterRequest& request,
             const ZoltMessages& messages);

// The class and the ID, in class 7 the address, that a sound answer is about, whatever was asked.
// An answer of class 7 under an ID of no memory is about the address -1, which is none.
ParameterItem ItemOf(std::string_view answer, const ZoltMessages& messages);

// Whether both have the same class and ID.
bool IsSameItem(const ParameterItem& one, const ParameterItem& other);

// Of a sound answer.
ParameterVerdict JudgeAnswer(std::string_view answer, const ParameterRequest& request,
                             const ZoltMessages& messages);

}  // namespace tarnlink
