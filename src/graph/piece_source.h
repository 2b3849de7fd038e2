// A text that is too long to be held and so is made piece by piece.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace tarnlink {

class PieceSource {
 public:
  // Bytes of a piece, more or less: a millisecond's work at most.
  static constexpr std::size_t kPiece = std::size_t{1} << 18;

  virtual ~PieceSource() = default;

  // Puts the next piece into `piece`, in place of what stands there. False, and an empty piece, if
  // there is none.
  virtual bool Next(std::string& piece) = 0;
  // How much of all is made, 0 to 1; never falls.
  virtual double Share() const = 0;
};

// Fills a piece from its front. Memory that a piece has used before is not cleared first, which
// would take as long as filling it.
class PieceFiller {
 public:
  explicit PieceFiller(std::string& piece) : piece_(piece) {}

  std::size_t size() const { return used_; }
  void Append(std::string_view text) {
    char* to = Room(text.size());
    std::memcpy(to, text.data(), text.size());
    Take(to + text.size());
  }

  // Room for so many bytes behind what there is; what is behind the taken ones does not count.
  char* Room(std::size_t bytes) {
    constexpr std::size_t kMore = PieceSource::kPiece / 4;
    if (used_ + bytes > piece_.size()) piece_.resize(used_ + bytes + kMore);
    return piece_.data() + used_;
  }
  void Take(const char* behind) { used_ = static_cast<std::size_t>(behind - piece_.data()); }

  // Last: the piece ends there.
  void Finish() { piece_.resize(used_); }

 private:
  std::string& piece_;
  std::size_t used_ = 0;
};

}  // namespace tarnlink
