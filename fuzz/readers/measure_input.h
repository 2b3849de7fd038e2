// A file of the graph out of an input: how it comes, and what it says.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/fuzz_input.h"
#include "graph/graphic.h"
#include "graph/measure_file_reader.h"

namespace tarnlink {

// Small enough for a fuzzer, which looks through all of it many times.
std::string ShortMeasureFile(std::string_view samples, bool with_measurements = true);

// What has been read, and how far that went.
struct ReadGraph {
  Graphic data;
  bool is_whole = false;
};

// Reads the text in pieces of `piece` bytes, at most `pieces` of them, and takes over what has been
// read, also when it was refused or stopped.
ReadGraph ReadGraphFile(std::string_view text, bool with_measurements, std::size_t piece,
                        std::size_t pieces);

// What holds of a graph however its file ended.
void ClaimGraph(const Graphic& data);

}  // namespace tarnlink
