// A view of an array for vorx/array.hpp: a pointer and a number of elements. Whatever has data() and size() becomes one
// (std::vector, std::array, std::span), and so do arrays and {pointer, n}.
#pragma once

#include <cassert>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace vorx {

template <class T>
class view {
 public:
  constexpr view(T* data, std::size_t size) : data_(data), size_(size) {}
  template <std::size_t N>
  constexpr view(T (&array)[N]) : data_(array), size_(N) {}
  // Of elements of this type: a view of const ones may be of others, too.
  template <class Range, class Element = std::remove_pointer_t<decltype(std::declval<Range&>().data())>,
            std::enable_if_t<std::is_convertible_v<Element (*)[], T (*)[]>, int> = 0>
  constexpr view(Range&& range) : data_(range.data()), size_(range.size()) {}

  constexpr T* data() const { return data_; }
  constexpr std::size_t size() const { return size_; }

 private:
  T* data_;
  std::size_t size_;
};

// The length that all have: anything else is a mistake in the program. Without assertions nothing is written beyond the shortest.
template <class First, class... Others>
constexpr std::size_t length(const First& first, const Others&... others) {
  assert(((first.size() == others.size()) && ...));
  std::size_t n = first.size();
  ((n = others.size() < n ? others.size() : n), ...);
  return n;
}

}  // namespace vorx
