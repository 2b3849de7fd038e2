// What the controller holds under data IDs: the one table that the ZOLT slave answers by and that
// docs/simulator.md shows. All values stand in the controller's memory.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "simulator/controller.h"

namespace boiler {

struct DataIdQuery {
  const Controller& controller;
  int slave = 0;
  int position = 0;  // in a list: the high byte of the request

  // The value of the memory item of that name.
  int Value(std::string_view item) const { return controller.Value(Item(item)); }
};

// Of a parameter: what its high byte may be, both ends included.
struct Limits {
  int lowest;
  int highest;
};

struct DataId {
  int data_class;
  std::uint16_t id;
  std::string_view name;
  std::string_view meaning;  // of the word, or of its two bytes
  int positions = 0;         // of a list; 0 for a single value
  // The word that a read gives; empty where nothing can be read.
  std::function<std::uint16_t(const DataIdQuery&)> read;
  std::string_view written;  // what a write takes; empty where nothing can be written
  // Whether a write takes these data bytes.
  std::function<bool(int high, int low)> takes;
  std::function<void(Controller&, int high, int low)> store;
  // What a controller with wrong limits takes instead; of three parameters only.
  std::optional<Limits> wrong_limits = {};
};

// In the order of classes and IDs.
const std::vector<DataId>& DataIds();

// Null where the class has no such ID.
const DataId* FindDataId(int data_class, std::uint16_t id);

}  // namespace boiler
