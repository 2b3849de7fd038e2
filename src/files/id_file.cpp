#include "files/id_file.h"

#include <charconv>
#include <limits>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "monitor/location_table.h"

namespace tarnlink {
namespace {

constexpr char kRevisionMark = '*';
constexpr char kNoClassMark = '-';

// The fields of one line, from the left.
class LineFields {
 public:
  explicit LineFields(std::string_view line) : rest_(line) {}

  // What stands before the next comma.
  std::string_view Next(const std::string& name) {
    if (!rest_) throw RunTimeError(kSubscript, name + " is missing.");
    const std::string_view rest = *rest_;
    const std::size_t comma = rest.find(',');
    rest_.reset();
    if (comma != std::string_view::npos) rest_ = rest.substr(comma + 1);
    return rest.substr(0, comma);
  }

  // All that is left, its commas included; nothing is empty.
  std::string_view Rest() const { return rest_.value_or(std::string_view()); }

 private:
  std::optional<std::string_view> rest_;
};

std::int32_t IdOf(std::string_view field) {
  const std::string digits = Trim(field);
  const char* const end = digits.data() + digits.size();
  std::uint32_t id = 0;
  const auto result = std::from_chars(digits.data(), end, id, 16);
  if (result.ec == std::errc::invalid_argument || result.ptr != end) {
    throw RunTimeError(kTypeMismatch, "The ID is no hexadecimal number.");
  }
  constexpr std::uint32_t kHighest = std::numeric_limits<std::int32_t>::max();
  if (result.ec != std::errc() || id > kHighest) {
    throw RunTimeError(kOverflow, "The ID is greater than " + Hex(kHighest) + ".");
  }
  return static_cast<std::int32_t>(id);
}

std::int32_t ClassOf(std::string_view field) {
  try {
    return ToLong(field);
  } catch (const RunTimeError& error) {
    throw RunTimeError(error.code(), std::string("The class: ") + error.what());
  }
}

std::int32_t SelectOf(std::string_view field) {
  const std::string select = Trim(field);
  if (select == "H") return kMsb;
  if (select == "L") return kLsb;
  return kBoth;
}

IDItem ItemOf(std::string_view line) {
  const bool has_class = !line.starts_with(kNoClassMark);
  if (!has_class) line.remove_prefix(1);
  LineFields fields(line);
  IDItem item;
  item.Name = fields.Next("The name");
  item.ID = IdOf(fields.Next("The ID"));
  if (has_class) item.Class = ClassOf(fields.Next("The class"));
  item.ByteSelect = SelectOf(fields.Rest());
  return item;
}

}  // namespace

IdFile ReadIdFile(std::string_view text) {
  IdFile file;
  file.failure = TakeLines(text, [&file](std::string_view line) {
    if (line.starts_with(kRevisionMark)) {
      file.IDRevision = line.substr(1);
      return;
    }
    if (file.items.size() == kMostIds) {
      throw RunTimeError(kSubscript,
                         "The file holds more than " + std::to_string(kMostIds) + " IDs.");
    }
    file.items.push_back(ItemOf(line));
  });
  if (!file.failure && file.items.empty()) file.failure = BadLine{0, "The file holds no IDs."};
  if (file.failure) file.items.clear();
  return file;
}

}  // namespace tarnlink
