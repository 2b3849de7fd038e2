// What the targets of readers claim of all of them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/run_time_error.h"
#include "files/bad_line.h"

namespace tarnlink {

// UTF-8, as text in memory is.
bool IsText(std::string_view text);

// A reason is a text for people: one line, and short whatever stood in the file.
void ClaimReason(std::string_view reason);

// The same of an error, which has a number that messages know.
void ClaimError(const RunTimeError& error);

// The same of the line that ended the reading of a text, which is one of its lines.
void ClaimBadLine(const std::optional<BadLine>& bad, std::string_view text);

// The lines of a text, as many as a reader can take.
std::size_t LineCount(std::string_view text);

// The characters of a UTF-8 text.
std::vector<std::string_view> Characters(std::string_view utf8);

// What `call` returns, or nothing if that ends with a sound error.
template <class Call>
auto Tried(Call call) -> std::optional<decltype(call())> {
  try {
    return call();
  } catch (const RunTimeError& error) {
    ClaimError(error);
    return std::nullopt;
  }
}

}  // namespace tarnlink
