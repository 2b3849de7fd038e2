// docs/simulator.md says of the memory and the faults what the simulator does.
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "simulator/fault.h"
#include "simulator/memory_layout.h"
#include "simulator/options.h"

namespace boiler {
namespace {

using ::testing::HasSubstr;

std::string Page() {
  std::ifstream file(BOILER_SIMULATOR_PAGE);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Row(const MemoryItem& item) {
  const std::string range = item.lowest == item.highest ? std::to_string(item.lowest)
                                                        : std::to_string(item.lowest) + " to " +
                                                              std::to_string(item.highest);
  return "| `" + std::string(item.name) + "` | " + HexDigits(item.address, 4) + " | " +
         std::string(TypeName(item.type)) + " | " + range + " | " + std::string(item.meaning) +
         " |";
}

TEST(SimulatorPage, HasARowForEachItemOfTheMemory) {
  const std::string page = Page();
  for (const MemoryItem& item : MemoryLayout()) EXPECT_THAT(page, HasSubstr(Row(item)));
}

TEST(SimulatorPage, HasARowForEachFault) {
  const std::string page = Page();
  for (const FaultInfo& info : AllFaults()) {
    EXPECT_THAT(page, HasSubstr("| `" + FaultText({info.kind, info.number}) + "` |"));
  }
}

TEST(SimulatorPage, ShowsTheHelpText) {
  EXPECT_THAT(Page(), HasSubstr("```\n" + std::string(HelpText()) + "```\n"));
}

}  // namespace
}  // namespace boiler
