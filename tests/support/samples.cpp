#include "support/samples.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "common/text_file.h"

namespace tarnlink {

std::string SampleBytes(std::string_view name) {
  const std::string path = std::string(TARNLINK_SAMPLES "/").append(name);
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string SampleText(std::string_view name) { return DecodeText(SampleBytes(name)); }

}  // namespace tarnlink
