// Whether what comes next on the line can be trusted to be the answer to the next request. Bytes
// too many, or an answer that is none, may mean that the real one is still on its way; it would
// pass for the answer to the next request, the one behind it for the next but one, and so on. So
// the next request waits until the line has been quiet.
#pragma once

namespace tarnlink {

class LineDoubt {
 public:
  // Something came that is not what was asked for.
  void Raise();
  // What was under way is gone.
  void Clear() { raised_ = false; }

  // Asked at each tick of `tick` ms before a request goes out: true if it may. `exchange` is how
  // long a request and its answer take on the line, in ms.
  bool AllowsRequest(int tick, int exchange);

 private:
  bool raised_ = false;
  // Of the ticks at which a request was wanted, in ms.
  int quiet_ = 0;   // since it was last raised
  int waited_ = 0;  // since it was first raised
};

}  // namespace tarnlink
