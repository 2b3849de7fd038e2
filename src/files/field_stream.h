// The fields of a comma-separated text, one stream over all its lines: a line end counts as a
// comma.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnlink {

struct Field {
  std::string_view text;  // without the quotes, or without the blanks around a bare field
  bool quoted = false;
};

// A field that begins with a double quote reaches to the next one, commas and blanks included; what
// stands between that quote and the next comma does not count. A quote that its line does not close
// reaches to the end of the line. A quote further inside a bare field is an ordinary character. The
// separator behind the last field opens no further one, an empty line in between is an empty field.
//
// The text must outlive the stream and the fields.
class FieldStream {
 public:
  explicit FieldStream(std::string_view text) : rest_(text) {}

  // Nothing at the end of the text.
  std::optional<Field> Next();

  // The next field as a value. `name` is what the field is called in the reasons of the errors: 62
  // at the end of the text, 13 for a field of the wrong kind, 6 for a number out of range. A text
  // may be bare, a number or a Boolean may not be quoted.
  std::string ReadText(std::string_view name);
  std::uint8_t ReadByte(std::string_view name);
  std::int16_t ReadInteger(std::string_view name);
  std::int32_t ReadLong(std::string_view name);
  float ReadSingle(std::string_view name);
  bool ReadBoolean(std::string_view name);

 private:
  Field TakeQuoted();
  Field TakeBare();
  void PassSeparator(std::size_t position);
  Field Require(std::string_view name);
  template <class Value>
  Value ReadNumber(std::string_view name, Value (*convert)(std::string_view));
  [[noreturn]] void Refuse(int code, std::string_view name, const std::string& reason) const;

  std::string_view rest_;
  int line_ = 1;        // of the next field
  int field_line_ = 1;  // of the last field
};

// A text as a quoted field. There is no escape: a double quote or a line end inside becomes a
// blank.
std::string QuotedField(std::string_view text);

// "#TRUE#" or "#FALSE#".
std::string_view BooleanField(bool value);

}  // namespace tarnlink
