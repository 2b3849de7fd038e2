#include "files/line_fields.h"

#include "common/numbers.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  const std::string line = DecodeText(input);
  LineFields fields(line);
  std::string joined;
  std::size_t count = 0;
  for (;; ++count) {
    const std::size_t left = fields.Rest().size();
    const auto field = Tried([&] { return fields.Next("The field"); });
    if (!field) break;
    Claim(field->find(',') == std::string_view::npos, "a comma ends a field");
    Claim(fields.Rest().size() <= left, "a field is taken off the line");
    joined.append(count == 0 ? "" : ",").append(*field);
    const auto id = Tried([&] { return IdOfField(*field); });
    Claim(!id || (*id >= 0 && IdOfField(Hex32(*id)) == *id), "an ID is written and read again");
    Claim(count <= line.size(), "there is an end");
  }
  Claim(count > 0 && joined == line, "the fields are the line");
}

std::vector<std::string> Seeds() { return {"Flow,40A1,4,H", " 7FFFFFFF ,80000000,,-1,", "", ","}; }

}  // namespace

FuzzTarget LineFieldsTarget() { return {"line_fields", Run, Seeds}; }

}  // namespace tarnlink
