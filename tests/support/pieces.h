// Feeds a reader with a text in pieces of one size: a file comes in pieces that end anywhere.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tarnlink {

// Calls `take` with each piece until it returns false, if it returns anything. A piece is gone when
// the next one comes, and stands in memory of its exact size.
template <class Take>
void FeedPieces(std::string_view bytes, std::size_t size, Take take) {
  while (!bytes.empty()) {
    const std::string_view next = bytes.substr(0, size);
    const std::vector<char> piece(next.begin(), next.end());
    const std::string_view view(piece.data(), piece.size());
    if constexpr (std::is_void_v<decltype(take(view))>) {
      take(view);
    } else if (!take(view)) {
      return;
    }
    bytes.remove_prefix(next.size());
  }
}

// What the reader makes of the text.
template <class Reader>
auto ReadInPieces(Reader reader, std::string_view bytes, std::size_t size) {
  FeedPieces(bytes, size, [&](std::string_view piece) { return reader.Take(piece); });
  return reader.Finish();
}

// Pieces of a byte each, of a few, and one of everything.
inline std::vector<std::size_t> PieceSizes(std::string_view bytes) {
  return {1, 2, 3, 7, 64, std::max<std::size_t>(bytes.size(), 1)};
}

}  // namespace tarnlink
