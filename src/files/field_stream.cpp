#include "files/field_stream.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"

namespace tarnlink {
namespace {

constexpr char kQuote = '"';
constexpr std::string_view kTrue = "#TRUE#";
constexpr std::string_view kFalse = "#FALSE#";

// A carriage return counts only as the first half of a line end, or at the end of a text that was
// cut between the halves.
std::string_view WithoutCarriageReturn(std::string_view text) {
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

std::string_view WithoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

std::optional<Field> FieldStream::Next() {
  field_line_ = line_;
  if (rest_.empty()) return std::nullopt;
  const std::size_t first = rest_.find_first_not_of(' ');
  if (first == std::string_view::npos || rest_[first] != kQuote) return TakeBare();
  rest_.remove_prefix(first + 1);
  return TakeQuoted();
}

Field FieldStream::TakeBare() {
  const std::size_t end = std::min(rest_.find_first_of(",\n"), rest_.size());
  std::string_view text = rest_.substr(0, end);
  if (end == rest_.size() || rest_[end] == '\n') text = WithoutCarriageReturn(text);
  PassSeparator(end);
  return {WithoutBlanks(text), false};
}

Field FieldStream::TakeQuoted() {
  const std::size_t end = std::min(rest_.find_first_of("\"\n"), rest_.size());
  std::string_view text = rest_.substr(0, end);
  const bool closed = end < rest_.size() && rest_[end] == kQuote;
  if (!closed) text = WithoutCarriageReturn(text);
  PassSeparator(closed ? std::min(rest_.find_first_of(",\n", end), rest_.size()) : end);
  return {text, true};
}

void FieldStream::PassSeparator(std::size_t position) {
  if (position < rest_.size() && rest_[position] == '\n') ++line_;
  rest_.remove_prefix(std::min(position + 1, rest_.size()));
}

void FieldStream::Refuse(int code, std::string_view name, const std::string& reason) const {
  throw RunTimeError(
      code, "Line " + std::to_string(field_line_) + ", " + std::string(name) + ": " + reason);
}

Field FieldStream::Require(std::string_view name) {
  const std::optional<Field> field = Next();
  if (!field) Refuse(kPastEndOfFile, name, "the file ends before it.");
  return *field;
}

template <class Value>
Value FieldStream::ReadNumber(std::string_view name, Value (*convert)(std::string_view)) {
  const Field field = Require(name);
  if (field.quoted) Refuse(kTypeMismatch, name, "a text stands in the place of a number.");
  try {
    return convert(field.text);
  } catch (const RunTimeError& error) {
    Refuse(error.code(), name, error.what());
  }
}

std::string FieldStream::ReadText(std::string_view name) { return std::string(Require(name).text); }

std::uint8_t FieldStream::ReadByte(std::string_view name) { return ReadNumber(name, ToByte); }

std::int16_t FieldStream::ReadInteger(std::string_view name) { return ReadNumber(name, ToInteger); }

std::int32_t FieldStream::ReadLong(std::string_view name) { return ReadNumber(name, ToLong); }

float FieldStream::ReadSingle(std::string_view name) { return ReadNumber(name, ToSingle); }

bool FieldStream::ReadBoolean(std::string_view name) {
  const Field field = Require(name);
  const bool may_be_one = !field.quoted && field.text.size() <= kFalse.size();
  const std::string text = may_be_one ? ToUpper(field.text) : std::string();
  if (text != kTrue && text != kFalse) {
    Refuse(kTypeMismatch, name, "neither #TRUE# nor #FALSE# stands there.");
  }
  return text == kTrue;
}

std::string QuotedField(std::string_view text) {
  std::string inner(text);
  for (char& c : inner) {
    if (c == kQuote || c == '\r' || c == '\n') c = ' ';
  }
  return kQuote + inner + kQuote;
}

std::string_view BooleanField(bool value) { return value ? kTrue : kFalse; }

}  // namespace tarnlink
