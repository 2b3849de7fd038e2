#include "files/config_file.h"

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/line_fields.h"

namespace tarnlink {
namespace {

constexpr char kCommentMark = '*';
constexpr char kSeparator = '\t';
constexpr std::int32_t kHighestId = 0xFFFF;  // what the four digits of a frame can hold

// What stands before the next tab, without the blanks around it. `rest` is then what stands behind
// it; behind the last field it is empty.
std::string TakeField(std::string_view& rest) {
  const std::size_t tab = rest.find(kSeparator);
  const std::string field = Trim(rest.substr(0, tab));
  rest.remove_prefix(tab == std::string_view::npos ? rest.size() : tab + 1);
  return field;
}

std::int32_t ConfigId(std::string field) {
  if (!field.empty() && (field.back() == 'h' || field.back() == 'H')) field.pop_back();
  const std::int32_t id = IdOfField(field);
  if (id > kHighestId) throw RunTimeError(kOverflow, "The ID is greater than FFFF.");
  return id;
}

// A fraction would be rounded to a limit that nobody has written down.
std::uint8_t ByteOf(const std::string& field, const std::string& name) {
  if (field.empty()) throw RunTimeError(kSubscript, name + " is missing.");
  try {
    if (field.find_first_not_of("0123456789") == std::string::npos) return ToByte(field);
  } catch (const RunTimeError&) {
    throw RunTimeError(kOverflow, name + " is not between 0 and 255.");
  }
  throw RunTimeError(kTypeMismatch, name + " is no whole number.");
}

void TakeLine(std::string_view line, ConfigFile& file) {
  if (IsBlank(line) || line.starts_with(kCommentMark)) return;
  if (file.items.size() == kMostConfigItems) {
    throw RunTimeError(kSubscript,
                       "The file holds more than " + std::to_string(kMostConfigItems) + " IDs.");
  }
  ConfigItem item;
  item.ID = ConfigId(TakeField(line));
  item.Minimum = ByteOf(TakeField(line), "The minimum");
  item.Maximum = ByteOf(TakeField(line), "The maximum");
  if (item.Minimum > item.Maximum) {
    throw RunTimeError(kOverflow, "The minimum is greater than the maximum.");
  }
  const std::string default_text = TakeField(line);
  if (!default_text.empty()) item.DefaultText = default_text;
  if (item.HasDefault()) item.DefaultValue = ByteOf(item.DefaultText, "The default");
  item.Description = TakeField(line);
  const std::string test_type = TakeField(line);
  file.items.push_back(item);
  // Nothing depends on it, so that a bad one costs no check.
  if (!test_type.empty()) file.items.back().TestType = ByteOf(test_type, "The test type");
}

}  // namespace

ConfigFile ReadConfigFile(std::string_view text) {
  ConfigFile file;
  int number = 0;
  LineReader lines(text);
  for (std::string_view line; lines.Next(line);) {
    ++number;
    const std::size_t before = file.items.size();
    try {
      TakeLine(line, file);
    } catch (const RunTimeError& error) {
      file.left_out += file.items.size() == before ? 1 : 0;
      std::optional<BadLine>& bad = before == kMostConfigItems ? file.too_many : file.failure;
      if (!bad) bad = BadLine{number, error.what()};
    }
  }
  return file;
}

}  // namespace tarnlink
