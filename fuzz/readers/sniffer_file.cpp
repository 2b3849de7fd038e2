#include "files/sniffer_file.h"

#include "common/numbers.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  const std::string text = DecodeText(input);
  const SnifferFile file = ReadSnifferFile(text);
  ClaimBadLine(file.failure, text);
  Claim(file.records.size() <= kMostSnifferRecords, "no more records than there is room for");
  Claim(file.records.size() <= LineCount(text), "a record is a line");
  Claim(IsText(file.Revision), "the revision is a text");
  std::string written;
  for (const SnifferRecord& record : file.records) {
    Claim(record.ID >= 0, "an ID is not negative");
    Claim(record.Representation >= 0 && record.Representation <= 3, "it can be shown");
    Claim(record.Type == kSniffSignedHigh || record.Type == kSniffSignedLow ||
              record.Type == kSniffSignedWord,
          "it is a byte or a word");
    Claim(IsText(record.Name), "its name is a text");
    const SnifferRecord* found = FindRecord(file, record.ID);
    Claim(found != nullptr && found->ID == record.ID, "it is found by its ID");
    const char* size = record.Type == kSniffSignedHigh ? "H" : "L";
    written += record.Name + "," + Hex(record.ID) + "," + std::to_string(record.Representation) +
               "," + (record.Type == kSniffSignedWord ? "" : size) + "\n";
  }
  const SnifferFile again = ReadSnifferFile(written);
  Claim(!again.failure && again.records == file.records, "what was read is read again");
}

std::vector<std::string> Seeds() {
  return {SampleText("default.snf").substr(0, 500), "*Rev 1\r\nFlow,40A1,0,H\r\nFan,F1,3,L,x\n",
          ",7FFFFFFF,9,\n"};
}

}  // namespace

FuzzTarget SnifferFileTarget() { return {"sniffer_file", Run, Seeds}; }

}  // namespace tarnlink
