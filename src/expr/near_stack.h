#pragma once

#include <cstddef>
#include <vector>

namespace zepkit10 {

/// A stack whose first entries cost no allocation.
template <class Entry, std::size_t NearCount>
class NearStack {
 public:
  bool Empty() const { return count_ == 0; }

  Entry& Top() { return count_ <= NearCount ? near_[count_ - 1] : far_.back(); }

  void Push(const Entry& entry) {
    if (count_ < NearCount) {
      near_[count_] = entry;
    } else {
      far_.push_back(entry);
    }
    ++count_;
  }

  Entry Pop() {
    const Entry entry = Top();
    if (count_ > NearCount) far_.pop_back();
    --count_;
    return entry;
  }

 private:
  std::size_t count_ = 0;
  Entry near_[NearCount];
  std::vector<Entry> far_;
};

}  // namespace zepkit10
