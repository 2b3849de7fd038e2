// docs/simulator.md says of the memory, the IDs, the registers and the faults what the simulator
// does.
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "simulator/data_ids.h"
#include "simulator/fault.h"
#include "simulator/memory_layout.h"
#include "simulator/modbus_registers.h"
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

std::string Row(const DataId& id) {
  const std::string written = id.store ? std::string(id.written) : "-";
  return "| `" + std::string(id.name) + "` | " + std::to_string(id.data_class) + " | " +
         std::to_string(id.id) + " | " + HexDigits(id.id, 4) + " | " + std::string(id.meaning) +
         " | " + written + " |";
}

std::string Row(const ModbusRegister& one) {
  const MemoryItem& item = Item(one.item);
  const std::string high = one.high_item.empty() ? "" : "`" + std::string(one.high_item) + "` and ";
  const std::string written =
      CanWriteItem(item) ? std::to_string(item.lowest) + " to " + std::to_string(item.highest)
                         : "-";
  return "| " + HexDigits(one.number, 4) + " | " + high + "`" + std::string(one.item) + "` | " +
         written + " |";
}

TEST(SimulatorPage, HasARowForEachDataId) {
  const std::string page = Page();
  for (const DataId& id : DataIds()) EXPECT_THAT(page, HasSubstr(Row(id)));
}

TEST(SimulatorPage, HasARowForEachModbusRegister) {
  const std::string page = Page();
  for (const ModbusRegister& one : ModbusRegisters()) EXPECT_THAT(page, HasSubstr(Row(one)));
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
