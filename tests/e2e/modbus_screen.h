// Screens of registers of a ModbusPeer.
#pragma once

#include <string>
#include <vector>

#include "monitor/location_table.h"

namespace e2e {

inline constexpr int kMostRegisters = 60;  // of a block

// Four hexadecimal digits, as an address and as what a value box shows.
std::string Digits(int number);

// A Location that shows one register, read by function 3 or 4.
tarnlink::Location Register(int index, int function = 3);

int RegisterOf(const tarnlink::Location& location);

// Locations for `count` registers that are read at once, behind those of `screen`.
void AddBlock(std::vector<tarnlink::Location>& screen, int first, int count, int function = 3);

// The screen file.
std::string ScreenFile(const std::vector<tarnlink::Location>& locations);

}  // namespace e2e
