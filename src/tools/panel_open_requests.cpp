#include "tools/panel_open_requests.h"

#include <algorithm>
#include <cstddef>

namespace tarnlink {

void PanelOpenRequests::Add(const Open& one) {
  constexpr std::size_t kMost = 100;  // whose answers can be on their way
  if (open_.size() == kMost) open_.erase(open_.begin());
  open_.push_back(one);
}

void PanelOpenRequests::Answered(int id) {
  const auto first = First(id);
  if (first != open_.end()) open_.erase(open_.begin(), first + 1);
}

bool PanelOpenRequests::HasOther(const PanelRequest& request) const {
  return std::any_of(open_.begin(), open_.end(), [&](const Open& one) {
    return one.request.Id == request.Id && one.request != request;
  });
}

std::optional<double> PanelOpenRequests::Age(int id, double now) const {
  if (!IsOurs(id)) return std::nullopt;
  return now - First(id)->sent;
}

bool PanelOpenRequests::IsOurs(int id) const {
  const auto first = First(id);
  return first != open_.end() && first->is_ours;
}

std::vector<PanelOpenRequests::Open>::const_iterator PanelOpenRequests::First(int id) const {
  return std::find_if(open_.begin(), open_.end(),
                      [id](const Open& one) { return one.request.Id == id; });
}

}  // namespace tarnlink
