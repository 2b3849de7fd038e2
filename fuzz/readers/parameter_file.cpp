#include "files/parameter_file.h"

#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  const ParameterFile file = ReadParameterFile(input);
  ClaimBadLine(file.failure, input);
  Claim(!file.failure || file.items.empty(), "a file that ends in a bad line has no items");
  Claim(file.failure || file.items.size() == static_cast<std::size_t>(file.count),
        "every line of a good file is an item");
  Claim(file.items.size() <= kMostParameters, "no more items than the writer can count");
  std::string written;
  for (const std::string& comment : file.comments) written += ParameterComment(comment);
  for (const ParameterItem& item : file.items) {
    Claim(item.Class >= 0 && item.Class <= kHighestParameterClass, "the class exists");
    Claim(item.ID >= 0 && item.ID <= 0xFFFF, "the ID fits in two bytes");
    Claim(item.Value >= 0 && item.Value <= 0xFFFF, "the value fits in two bytes");
    written += ParameterLine(item.Class, Stuff(Hex(item.ID), 4), item.Value);
  }
  const ParameterFile again = ReadParameterFile(written);
  Claim(!again.failure && again.items == file.items, "what is written is read again");
  Claim(again.comments.size() == file.comments.size(), "a comment that is written is one");
}

std::vector<std::string> Seeds() {
  return {SampleText("boiler.par"), "5 &H0123 &H2A\r\n", "9 1 2\n", "5 65536 1\n",
          "5 1 &H10000\n",          "* only a comment\n"};
}

}  // namespace

FuzzTarget ParameterFileTarget() { return {"parameter_file", Run, Seeds}; }

}  // namespace tarnlink
