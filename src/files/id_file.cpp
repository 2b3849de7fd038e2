#include "files/id_file.h"

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "files/line_fields.h"
#include "monitor/location_table.h"

namespace tarnlink {
namespace {

constexpr char kRevisionMark = '*';
constexpr char kNoClassMark = '-';

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
  item.ID = IdOfField(fields.Next("The ID"));
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
