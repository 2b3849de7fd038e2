// The calls of the system by which a document comes to the disk, as the process really makes them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "disk/bench.h"

namespace tarnlink::disk {

// The calls that write, sync, name, open and close, how they are called by the system.
const std::vector<std::string>& CallsOfASave();

// What a process of that bench does between the command to save and its answer, in order: "write",
// and "saved" for the answer itself. Under each of them strace's whole line.
struct CallOfASave {
  std::string name;
  std::string line;
};
std::vector<CallOfASave> WatchSave(const Bench& bench);

// How often a process of that bench makes each call in one save, in the thread that makes most of
// them: so far the faults of `Tracer` can count. None is missing.
std::map<std::string, int> CountCalls(const Bench& bench);

}  // namespace tarnlink::disk
