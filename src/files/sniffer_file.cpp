#include "files/sniffer_file.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/line_fields.h"
#include "monitor/location_table.h"

namespace tarnlink {
namespace {

constexpr char kRevisionMark = '*';

std::int32_t RepresentationOf(std::string_view field) {
  std::int32_t representation = 0;
  try {
    representation = ToLong(field);
  } catch (const RunTimeError& error) {
    throw RunTimeError(error.code(), std::string("The representation: ") + error.what());
  }
  if (representation < kDecimal || representation > kOctal) {
    throw RunTimeError(kOverflow, "The representation is not 0 to 3.");
  }
  return representation;
}

std::int32_t TypeOf(std::string_view field) {
  const std::string size = Trim(field.substr(0, field.find(',')));
  if (size == "H") return kSniffSignedHigh;
  if (size == "L") return kSniffSignedLow;
  return kSniffSignedWord;
}

void TakeLine(std::string_view line, SnifferFile& file) {
  if (IsBlank(line)) return;
  if (line.starts_with(kRevisionMark)) {
    file.Revision = line.substr(1);
    return;
  }
  if (file.records.size() == kMostSnifferRecords) {
    throw RunTimeError(kSubscript, "The file holds more than " +
                                       std::to_string(kMostSnifferRecords) + " records.");
  }
  LineFields fields(line);
  SnifferRecord record;
  record.Name = fields.Next("The name");
  record.ID = IdOfField(fields.Next("The ID"));
  const std::string_view representation = fields.Next("The representation");
  record.Type = TypeOf(fields.Rest());
  record.Representation = kHexadecimal;
  file.records.push_back(record);
  // One that is none of the four costs neither name nor value.
  file.records.back().Representation = RepresentationOf(representation);
}

}  // namespace

SnifferFile ReadSnifferFile(std::string_view text) {
  SnifferFile file;
  int number = 0;
  LineReader lines(text);
  for (std::string_view line; lines.Next(line);) {
    ++number;
    try {
      TakeLine(line, file);
    } catch (const RunTimeError& error) {
      if (!file.failure) file.failure = BadLine{number, error.what()};
    }
  }
  return file;
}

const SnifferRecord* FindRecord(const SnifferFile& file, std::int64_t id) {
  const auto found = std::find_if(file.records.begin(), file.records.end(),
                                  [&](const SnifferRecord& record) { return record.ID == id; });
  return found == file.records.end() ? nullptr : &*found;
}

}  // namespace tarnlink
