#include "files/config_file.h"

#include "common/numbers.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void ClaimItem(const ConfigItem& item) {
  Claim(item.ID >= 0 && item.ID <= 0xFFFF, "the ID fits in four digits");
  Claim(item.Minimum <= item.Maximum, "the limits have something between them");
  Claim(item.HasDefault() || item.DefaultValue == 0, "without a default there is no value of it");
  Claim(!item.ReadValue && item.Result == ConfigItem::kNoResult, "nothing has been checked yet");
  Claim(IsText(item.DefaultText) && IsText(item.Description), "its texts are texts");
}

std::string LineOf(const ConfigItem& item) {
  return Hex(item.ID) + "h\t" + std::to_string(item.Minimum) + "\t" + std::to_string(item.Maximum) +
         "\t" + item.DefaultText + "\t" + item.Description + "\t" + std::to_string(item.TestType) +
         "\n";
}

void Run(std::string_view input) {
  const std::string text = DecodeText(input);
  const ConfigFile file = ReadConfigFile(text);
  ClaimBadLine(file.failure, text);
  ClaimBadLine(file.too_many, text);
  Claim(file.items.size() <= kMostConfigItems, "no more items than there is room for");
  Claim(!file.too_many || file.items.size() == kMostConfigItems, "too many only if all are there");
  Claim(file.left_out >= 0 &&
            file.items.size() + static_cast<std::size_t>(file.left_out) <= LineCount(text),
        "each line makes one item or is left out");
  std::string written;
  for (const ConfigItem& item : file.items) {
    ClaimItem(item);
    written += LineOf(item);
  }
  const ConfigFile again = ReadConfigFile(written);
  Claim(!again.failure && again.items == file.items, "what was read is read again");
}

std::vector<std::string> Seeds() {
  return {SampleText("boiler.cfg").substr(0, 500), "* comment\r\n40A1h\t1\t9\t5\tName\t2\r\n",
          "1\t0\t255\r\n2\t5\t1\t3\n", "\t\t\t\nFFFFh\t1\t2\t-\t\t256\n"};
}

}  // namespace

FuzzTarget ConfigFileTarget() { return {"config_file", Run, Seeds}; }

}  // namespace tarnlink
