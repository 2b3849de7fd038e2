#include "files/id_file.h"

#include "common/numbers.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

std::string LineOf(const IDItem& item) {
  constexpr const char* kSelects[] = {"H", "L", ""};
  return item.Name + "," + Hex(item.ID) + "," + std::to_string(item.Class) + "," +
         kSelects[item.ByteSelect] + "\n";
}

void Run(std::string_view input) {
  const std::string text = DecodeText(input);
  const IdFile file = ReadIdFile(text);
  ClaimBadLine(file.failure, text);
  Claim(file.failure.has_value() == file.items.empty(), "either a failure or items");
  Claim(file.items.size() <= kMostIds, "no more IDs than there is room for");
  Claim(IsText(file.IDRevision), "the revision is a text");
  std::string written;
  bool can_be_written = !file.items.empty();
  for (const IDItem& item : file.items) {
    Claim(item.ID >= 0, "an ID is not negative");
    Claim(item.ByteSelect >= 0 && item.ByteSelect <= 2, "it is a byte or both");
    Claim(IsText(item.Name), "its name is a text");
    // At the beginning of a line these say something else.
    if (item.Name.starts_with('-') || item.Name.starts_with('*')) can_be_written = false;
    written += LineOf(item);
  }
  if (!can_be_written) return;
  const IdFile again = ReadIdFile(written);
  Claim(!again.failure && again.items == file.items, "what was read is read again");
}

std::vector<std::string> Seeds() {
  return {SampleText("default.ids").substr(0, 500), SampleText("MBID.ids").substr(0, 500),
          "*Rev 1\r\nFlow,40A1,4,H\r\n-Fan,F1,L\n", "a,7FFFFFFF,-1,\n"};
}

}  // namespace

FuzzTarget IdFileTarget() { return {"id_file", Run, Seeds}; }

}  // namespace tarnlink
