// Locations as tests make them: data IDs and registers, and what can be changed of any Location.
#pragma once

#include <string>
#include <vector>

#include "monitor/location_table.h"

namespace tarnlink {

// A data ID that is read as a word.
Location IdAt(const std::string& address, const std::string& slave = "0", int data_class = 1);
// A register that is read by function 3.
Location RegisterAt(const std::string& address, const std::string& slave = "1");
// So many registers in a row, of which the first reads all.
std::vector<Location> BlockAt(int first, int count);

// --- The Location, changed ---

Location OfSlave(const std::string& slave, Location location);
Location Flagged(int scan_flags, Location location);
// One byte of a data ID or register, or the whole.
Location Selected(SelectByte byte, Location location);
Location BitOf(int bit, Location location);
// A register that is read by the message of the first of its block, and that first one.
Location Follower(Location location);
Location HeadOf(int registers, Location location);

}  // namespace tarnlink
