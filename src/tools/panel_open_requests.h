// The requests of the control panel whose answers may still come, in the order in which they went
// out. A slave answers in that order, where it answers at all, but the answers of the error history
// do not say which entry they are of.
#pragma once

#include <vector>

#include "tools/panel_requests.h"

namespace tarnlink {

class PanelOpenRequests {
 public:
  // `now` in ms.
  void Add(const PanelRequest& request, double now);
  // The answer to the first one with this ID, or to one behind it: nothing comes any more for those
  // before it.
  void Answered(int id);

  // Another one with the same ID, whose answer would pass for that of `request`.
  bool HasOther(const PanelRequest& request) const;
  // Whether an answer with this ID comes within `least` ms of the first one that it can belong to.
  bool IsEarly(int id, double now, int least) const;

 private:
  struct Open {
    PanelRequest request;
    double sent = 0;
  };

  std::vector<Open>::const_iterator First(int id) const;

  std::vector<Open> open_;
};

}  // namespace tarnlink
