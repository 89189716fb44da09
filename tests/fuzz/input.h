#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// The bytes of a run, taken from the front. What is taken behind their end is zero.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool AtEnd() const { return size_ == 0; }

  /// A number of any value, infinities and NaN among them.
  template <class Number>
  Number Any() {
    Number number{};
    const std::size_t taken = std::min(sizeof number, size_);
    if (taken > 0) std::memcpy(&number, data_, taken);
    Skip(taken);
    return number;
  }

  /// A number from 0 to `last`, which is below 256.
  int UpTo(int last) { return Any<std::uint8_t>() % (last + 1); }

  /// All that is left, in Latin-1.
  std::u16string Text() {
    const std::u16string text(data_, data_ + size_);
    Skip(size_);
    return text;
  }

 private:
  void Skip(std::size_t count) {
    data_ += count;
    size_ -= count;
  }

  const std::uint8_t* data_;
  std::size_t size_;
};
