// The requests of the control panel whose answers may still come, in the order in which they went
// out. A slave answers in that order, where it answers at all, but the answers of the error history
// do not say which entry they are of. Another master's requests to the same slave, as far as they
// can be heard, stand among them: their answers come in as well.
#pragma once

#include <optional>
#include <vector>

#include "tools/panel_requests.h"

namespace tarnlink {

class PanelOpenRequests {
 public:
  // `now` in ms, by a clock that may be set.
  void Add(const PanelRequest& request, double now) { Add({request, now, true}); }
  void AddForeign(const PanelRequest& request) { Add({request, 0, false}); }
  // The answer to the first one with this ID, or to one behind it: nothing comes any more for those
  // before it.
  void Answered(int id);

  // Another one with the same ID, whose answer would pass for that of `request`.
  bool HasOther(const PanelRequest& request) const;
  // How many ms after the first one of ours that it can belong to an answer with this ID comes;
  // less than nothing where the clock has been set back since. Nothing for an ID that is not out.
  std::optional<double> Age(int id, double now) const;
  // Whether it is the answer to a request of the panel.
  bool IsOurs(int id) const;

 private:
  struct Open {
    PanelRequest request;
    double sent = 0;
    bool is_ours = true;
  };

  void Add(const Open& one);

  std::vector<Open>::const_iterator First(int id) const;

  std::vector<Open> open_;
};

}  // namespace tarnlink
