#include <algorithm>
#include <iterator>

#include "fuzz/target.h"

namespace tarnlink {

std::vector<FuzzTarget> AllFuzzTargets() {
  std::vector<FuzzTarget> all = ReaderTargets();
  for (const auto& more : {DecoderTargets(), FormTargets()}) {
    std::copy(more.begin(), more.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace tarnlink
