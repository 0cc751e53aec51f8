// TAnswer: what an operation gives back, written piece by piece when it is wanted, so that an
// answer of ten thousand instances never stands in memory as text.
//
// Ownership: the list shares what it will write. It belongs to the thread of the namespace.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "wbem/TElementWriter.h"

namespace hav::wbem {

struct TList {
  std::size_t count = 0;
  std::function<void(std::size_t, TElementWriter&)> write;
};

struct TAnswer {
  struct TOutput {
    std::string name;
    std::string type;
    std::string text;
  };

  bool hasReturnValue = false;
  TList list;
  std::size_t begin = 0;  // of what is returned of the list
  std::size_t end = 0;
  std::vector<TOutput> outputs;

  static TAnswer Nothing() { return {}; }
  static TAnswer Of(TList list) {
    TAnswer answer;
    answer.hasReturnValue = true;
    answer.end = list.count;
    answer.list = std::move(list);
    return answer;
  }
  // One element.
  template <class F>
  static TAnswer One(F&& write) {
    return Of({1, [write = std::forward<F>(write)](std::size_t, TElementWriter& writer) {
                 write(writer);
               }});
  }
};

// A list with `write` called for each of these.
template <class T, class F>
TList ListOf(std::vector<T> elements, F&& write) {
  const auto count = elements.size();
  return {count, [elements = std::move(elements), write = std::forward<F>(write)](
                     std::size_t at, TElementWriter& writer) { write(elements[at], writer); }};
}

}  // namespace hav::wbem
