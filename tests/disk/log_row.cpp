#include "disk/documents.h"

namespace tarnlink::disk {

std::string LogRow(int number) {
  constexpr int kValues = 20;
  std::string row = std::to_string(number);
  for (int value = 0; value < kValues; ++value) {
    row.append("\t").append(std::to_string(number * kValues + value));
  }
  return row.append("\r\n");
}

}  // namespace tarnlink::disk
