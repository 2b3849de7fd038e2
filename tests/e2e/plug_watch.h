// What the program takes of the machine, seen from outside: descriptors, memory, processor.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "driven_program.h"

namespace e2e {

struct HeapCount;

struct Holding {
  int files = 0;              // open descriptors
  std::int64_t blocks = 0;    // of the heap; 0 where nothing counts them
  std::int64_t bytes = 0;     // of the heap
  std::int64_t resident = 0;  // bytes of memory
};

class PlugWatch {
 public:
  // The program of this process that is started while this lives is watched.
  explicit PlugWatch(const TestFolder& folder);
  ~PlugWatch();
  PlugWatch(const PlugWatch&) = delete;
  PlugWatch& operator=(const PlugWatch&) = delete;

  Holding Look();
  int Files();
  // What they are.
  std::string FileNames();

 private:
  pid_t Pid();

  HeapCount* heap_ = nullptr;
  pid_t pid_ = -1;
};

// How much `values` grow from one to the next, by least squares.
double Slope(const std::vector<double>& values);

}  // namespace e2e
