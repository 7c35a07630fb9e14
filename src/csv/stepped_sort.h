#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace qvrcom::csv {

// A stable merge sort that can be done a little at a time, so that a user interface stays alive meanwhile.
template <class Key, class Less>
class SteppedSort {
 public:
  SteppedSort(std::vector<Key> keys, Less less)
      : keys_(std::move(keys)), merged_(keys_.size()), less_(std::move(less)) {}

  // Moves about `budget` keys; answers whether there is more to do.
  bool step(std::size_t budget) {
    while (budget > 0 && !sorted()) {
      const std::size_t moved = runs_ < keys_.size() ? sort_run() : merge_some(budget);
      budget -= std::min(budget, moved);
    }
    return !sorted();
  }

  const std::vector<Key>& keys() const { return keys_; }

 private:
  static constexpr std::size_t kRun = 1024;

  bool sorted() const { return runs_ >= keys_.size() && width_ >= keys_.size(); }
  std::size_t clip(std::size_t place) const { return std::min(place, keys_.size()); }

  std::size_t sort_run() {
    const std::size_t end = clip(runs_ + kRun);
    const auto at = [this](std::size_t place) { return keys_.begin() + static_cast<std::ptrdiff_t>(place); };
    std::stable_sort(at(runs_), at(end), less_);
    const std::size_t moved = end - runs_;
    runs_ = end;
    if (runs_ == keys_.size()) start_pair(0);
    return moved;
  }

  void start_pair(std::size_t place) {
    pair_ = out_ = left_ = place;
    right_ = clip(place + width_);
  }

  std::size_t merge_some(std::size_t budget) {
    const std::size_t middle = clip(pair_ + width_);
    const std::size_t end = clip(pair_ + 2 * width_);
    const std::size_t start = out_;
    for (const std::size_t stop = std::min(end, out_ + budget); out_ < stop; ++out_) {
      const bool from_right = left_ == middle || (right_ < end && less_(keys_[right_], keys_[left_]));
      merged_[out_] = std::move(keys_[from_right ? right_++ : left_++]);
    }
    const std::size_t moved = out_ - start;
    if (out_ == end) start_pair(end);
    if (pair_ == keys_.size()) {
      std::swap(keys_, merged_);
      width_ *= 2;
      start_pair(0);
    }
    return moved;
  }

  std::vector<Key> keys_;
  std::vector<Key> merged_;
  Less less_;
  std::size_t runs_ = 0;      // keys before this place lie in sorted runs
  std::size_t width_ = kRun;  // length of the sorted runs
  std::size_t pair_ = 0;      // start of the two runs that are being merged
  std::size_t left_ = 0, right_ = 0, out_ = 0;
};

}  // namespace qvrcom::csv
