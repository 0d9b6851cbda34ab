// Lists that the library hands out and callers give back.
#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "calls/call.h"

namespace lab {

// Lists whose elements are chained; `counted` names their number in the trace.
template <typename Element>
class ListsOut {
 public:
  using List = std::vector<Element>;

  explicit ListsOut(const char* counted) : counted_(counted) {}

  // Keeps the list and returns its first element; null, and nothing is kept, for an empty one.
  Element* HandOut(Call& call, std::unique_ptr<List> list) {
    call.Out(counted_, list->size());
    if (list->empty()) return nullptr;
    return lists_.emplace_back(std::move(list))->data();
  }

  // Frees the list of this first element. Returns 0, or kBadArgument when no list begins with it.
  std::uint32_t TakeBack(Call& call, const Element* first) {
    const auto held = std::find_if(lists_.begin(), lists_.end(),
                                   [=](const std::unique_ptr<List>& list) { return list->data() == first; });
    if (held == lists_.end()) return kBadArgument;
    call.Out(counted_, (*held)->size());
    lists_.erase(held);
    return kSuccess;
  }

 private:
  const char* counted_;
  std::vector<std::unique_ptr<List>> lists_;
};

}  // namespace lab
