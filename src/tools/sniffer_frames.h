// Cuts what comes in from the link into frames. Nothing says where one begins: behind a bad one it
// is lost, and finds back into step at a start byte.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

class SnifferFrames {
 public:
  enum class Found {
    kFrame,    // the next sound one
    kNothing,  // until more comes in
    kLost,     // bytes that no frame begins in: what waits on the line belongs to them
  };

  void Add(std::string_view bytes) { rest_ += bytes; }
  // To be asked until it finds no frame any more.
  Found Next();
  // That was found last.
  const std::string& frame() const { return frame_; }
  // How many bytes are missing before there can be a frame.
  int Missing() const;

  // The port was opened anew. The link is in mid-frame wherever it was before.
  void DropRest() { rest_.clear(); }

  int count() const { return count_; }
  int bad() const { return bad_; }

 private:
  void CountBad();
  void DropToStart(std::size_t from);

  std::string rest_;
  std::string frame_;
  bool in_step_ = true;  // what comes next begins with a frame's first byte
  int count_ = 0;        // bad ones too
  int bad_ = 0;
};

}  // namespace tarnlink
