// A boiler on a line in virtual time, and the few words in which tests speak of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "simulator/log.h"
#include "simulator/simulated_boiler.h"

namespace boiler {

// Bytes that reached the master together.
struct Arrival {
  std::int64_t time_us;
  std::string hex;

  bool operator==(const Arrival&) const = default;
};

inline void PrintTo(const LogEntry& entry, std::ostream* out) { *out << LogLine(entry); }
inline void PrintTo(const Arrival& arrival, std::ostream* out) {
  *out << arrival.time_us << " us: " << arrival.hex;
}

class BoilerOnLine {
 public:
  explicit BoilerOnLine(const SimulatedBoiler::Options& options = {})
      : boiler_(options, [this](const LogEntry& entry) { log_.push_back(entry); }) {}

  void Fault(std::string_view text) { boiler_.line().AddFault(text); }

  // The master sends these bytes, given in hexadecimal.
  void Send(std::string_view hex) { SendBytes(*ParseHexBytes(hex)); }
  void SendBytes(std::string_view bytes) { boiler_.line().Hear(now_us_, bytes); }

  // Lets so much time pass; what arrives meanwhile goes to Arrivals.
  void Pass(std::int64_t us) { RunUntil(now_us_ + us); }

  // Lets time pass until all is at rest, or for ten seconds. Returns what has arrived in
  // hexadecimal.
  std::string Rest() {
    const std::size_t before = arrivals_.size();
    const std::int64_t end_us = now_us_ + 10'000'000;
    while (boiler_.line().NextDue().value_or(end_us) < end_us && !stuck_) {
      RunUntil(*boiler_.line().NextDue());
    }
    std::string all;
    for (std::size_t i = before; i < arrivals_.size(); ++i) {
      all += (all.empty() ? "" : " ") + arrivals_[i].hex;
    }
    return all;
  }

  // A whole exchange: the request in hexadecimal, what came back.
  std::string Ask(std::string_view hex) {
    Send(hex);
    return Rest();
  }

  const std::vector<Arrival>& Arrivals() const { return arrivals_; }
  std::vector<std::string> ArrivedHex() const {
    std::vector<std::string> all;
    for (const Arrival& one : arrivals_) all.push_back(one.hex);
    return all;
  }
  std::int64_t NowUs() const { return now_us_; }

  SimulatedBoiler& boiler() { return boiler_; }
  LineSimulator& line() { return boiler_.line(); }
  Controller& controller() { return boiler_.controller(); }
  void SetByte(std::uint16_t address, std::uint8_t value) {
    controller().WriteByte(address, value);
  }

  // "kind meaning" of each entry.
  std::vector<std::string> Log() const {
    std::vector<std::string> lines;
    for (const LogEntry& entry : log_) {
      const std::string line = LogLine(entry);
      const std::size_t kind = line.find('\t') + 1;
      lines.push_back(line.substr(kind, line.find('\t', kind) - kind) + ' ' + entry.meaning);
    }
    return lines;
  }
  std::vector<LogEntry> Entries(LogKind kind) const {
    std::vector<LogEntry> all;
    for (const LogEntry& entry : log_) {
      if (entry.kind == kind) all.push_back(entry);
    }
    return all;
  }
  // The entry of the last fault that struck.
  LogEntry LastFault() const {
    const auto faults = Entries(LogKind::kFault);
    return faults.empty() ? LogEntry{} : faults.back();
  }

 private:
  void RunUntil(std::int64_t end_us) {
    for (auto due = boiler_.line().NextDue(); due && *due <= end_us;
         due = boiler_.line().NextDue()) {
      now_us_ = std::max(now_us_, *due);
      const std::string bytes = boiler_.line().TakeDue(now_us_);
      if (bytes.empty() && boiler_.line().NextDue() == due) {
        ADD_FAILURE() << "The line wants to be served over and over at " << *due << " us.";
        stuck_ = true;
        break;
      }
      if (!bytes.empty()) arrivals_.push_back({now_us_, HexText(bytes)});
    }
    now_us_ = end_us;
  }

  std::vector<LogEntry> log_;
  SimulatedBoiler boiler_;
  std::vector<Arrival> arrivals_;
  std::int64_t now_us_ = 0;
  bool stuck_ = false;
};

// Requests and answers at F400, where nothing but a write changes what is there.
constexpr std::string_view kReadByteF400 = "04 05 46 34 30 30 44 46 03";
constexpr std::uint16_t kF400 = 0xF400;

}  // namespace boiler
