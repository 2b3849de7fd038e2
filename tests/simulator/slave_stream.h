// Bytes put into a slave, and what it made of them, in words.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "simulator/slave.h"

namespace boiler {

inline std::string Told(const Heard& heard) {
  if (const auto* request = std::get_if<Request>(&heard)) return request->meaning;
  const Ignored& ignored = std::get<Ignored>(heard);
  return HexText(ignored.bytes) + ": " + ignored.reason;
}

inline std::vector<std::string> Hear(Slave& slave, const std::string& bytes) {
  std::vector<std::string> told;
  for (const char byte : bytes) {
    if (const auto heard = slave.Hear(byte)) told.push_back(Told(*heard));
  }
  return told;
}

inline std::vector<std::string> HearHex(Slave& slave, std::string_view hex) {
  return Hear(slave, *ParseHexBytes(hex));
}

inline std::string Silence(Slave& slave) {
  const auto heard = slave.Silence();
  return heard ? Told(*heard) : "nothing";
}

// Every byte that comes is either part of a request or reported as ignored, whatever comes: noise,
// beginnings of frames and the whole frame.
inline void ExpectAccountForEveryByte(Slave& slave, const std::string& begin,
                                      const std::string& whole) {
  Random random(11);
  for (int round = 0; round < 2000; ++round) {
    std::string stream;
    for (int i = random.Below(40); i > 0; --i) {
      const int kind = random.Below(3);
      stream += kind == 0 ? std::string(1, random.Byte()) : kind == 1 ? begin : whole;
    }
    std::string accounted;
    const auto take = [&](const std::optional<Heard>& heard) {
      if (!heard) return;
      const auto* request = std::get_if<Request>(&*heard);
      accounted += request != nullptr ? request->bytes : std::get<Ignored>(*heard).bytes;
    };
    for (const char byte : stream) take(slave.Hear(byte));
    take(slave.Silence());
    ASSERT_EQ(HexText(accounted), HexText(stream));
    ASSERT_FALSE(slave.Waiting());
  }
}

// The names of the faults that do not fit.
inline std::vector<std::string_view> Misfits(const Slave& slave) {
  std::vector<std::string_view> misfits;
  for (const FaultInfo& info : AllFaults()) {
    if (!slave.Misfit(info.kind).empty()) misfits.push_back(info.name);
  }
  return misfits;
}

}  // namespace boiler
