#include "simulator/simulated_boiler.h"

#include <charconv>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "simulator/bytes.h"
#include "simulator/problem.h"
#include "simulator/slave_any.h"
#include "simulator/slave_modbus.h"
#include "simulator/slave_tarnlink.h"
#include "simulator/slave_zolt.h"

namespace boiler {

namespace {

Problem BadAddresses(const std::string& text, std::string_view right) {
  return Problem("The slave addresses \"" + text + "\" must be " + std::string(right) +
                 " with commas between them.");
}

std::vector<std::string> Parts(std::string_view text) {
  std::vector<std::string> parts;
  while (true) {
    const std::size_t comma = text.find(',');
    parts.emplace_back(text.substr(0, comma));
    if (comma == std::string_view::npos) return parts;
    text.remove_prefix(comma + 1);
  }
}

std::string ZoltAddresses(const std::string& text) {
  std::string addresses;
  for (const std::string& part : Parts(text)) {
    if (part.size() != 1 || kZoltSlaves.find(part) == std::string_view::npos) {
      throw BadAddresses(text, "digits 0 to F");
    }
    addresses += part;
  }
  return addresses;
}

std::set<std::uint16_t> Cells(const std::string& text) {
  std::set<std::uint16_t> cells;
  if (text.empty()) return cells;
  for (const std::string& part : Parts(text)) {
    const auto address = ParseAddress(part);
    if (!address) {
      throw Problem("The addresses \"" + text +
                    "\" must be hexadecimal, 0 to FFFF, with commas between them.");
    }
    cells.insert(*address);
  }
  return cells;
}

std::vector<int> ModbusAddresses(const std::string& text) {
  std::vector<int> addresses;
  for (const std::string& part : Parts(text)) {
    int address = 0;
    const char* end = part.data() + part.size();
    const auto [stop, error] = std::from_chars(part.data(), end, address);
    const bool number = error == std::errc() && stop == end;
    if (!number || address < kModbusFirstSlave || address > kModbusLastSlave) {
      throw BadAddresses(text, "whole numbers from 1 to 247");
    }
    addresses.push_back(address);
  }
  return addresses;
}

std::unique_ptr<Slave> MakeTarnlink(const SlaveOptions& options) {
  if (!options.addresses.empty()) throw Problem("A TarnLink slave has no address.");
  return std::make_unique<TarnlinkSlave>();
}

std::unique_ptr<Slave> MakeZolt(const SlaveOptions& options) {
  const std::string text = options.addresses.empty() ? "0" : options.addresses;
  return std::make_unique<ZoltSlave>(
      ZoltAddresses(text), options.answers_corrupted, options.has_wrong_limits,
      WriteOnceCells{Cells(options.write_once), Cells(options.write_once_silent)});
}

std::unique_ptr<Slave> MakeModbus(const SlaveOptions& options) {
  const std::string text = options.addresses.empty() ? "1" : options.addresses;
  return std::make_unique<ModbusSlave>(ModbusAddresses(text));
}

std::unique_ptr<Slave> MakeAny(const SlaveOptions& options) {
  return std::make_unique<AnySlave>(MakeTarnlink({}), MakeZolt(options), MakeModbus({}));
}

}  // namespace

std::unique_ptr<Slave> MakeSlave(std::string_view protocol, const SlaveOptions& options) {
  if (protocol == "zolt") return MakeZolt(options);
  if (protocol == "any") return MakeAny(options);
  if (options.answers_corrupted) {
    throw Problem("Only a ZOLT slave can answer that a request is corrupted.");
  }
  if (options.has_wrong_limits) throw Problem("Only a ZOLT slave has parameters with limits.");
  if (!options.write_once.empty() || !options.write_once_silent.empty()) {
    throw Problem("Only a ZOLT slave has addresses that are written once.");
  }
  if (protocol == "tarnlink") return MakeTarnlink(options);
  if (protocol == "modbus") return MakeModbus(options);
  throw Problem("The boiler does not speak the protocol \"" + std::string(protocol) +
                "\"; it speaks tarnlink, zolt, modbus, or any.");
}

SimulatedBoiler::SimulatedBoiler(const Options& options, LogSink log)
    : controller_(options.seed),
      slave_(MakeSlave(options.protocol, options.slave)),
      line_(controller_, *slave_, options.line, options.seed, std::move(log)) {
  const auto& [addresses, gap_us] = options.second_master;
  if (addresses.empty()) return;
  if (options.protocol != "zolt" && options.protocol != "any") {
    throw Problem("A second master speaks ZOLT, which this boiler does not.");
  }
  line_.Join(SecondMaster(ZoltAddresses(addresses), gap_us));
}

}  // namespace boiler
