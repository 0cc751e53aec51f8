// Mutants: what the instrumented sources call. Every place that can be changed asks here, by
// the number of the change, whether it is the one that is switched on; so one build holds all
// of them. Included before everything else.
#pragma once

#include <cstddef>

namespace hav::mutants {

constexpr int kMost = 1 << 17;

// The change that is switched on, 0 when none is.
extern "C" __attribute__((visibility("default"))) int hav_mutant;
// What has been asked for since it was last cleared.
extern "C" __attribute__((visibility("default"))) unsigned char hav_reached[kMost];

template <int kNumber>
inline bool On() noexcept {
  if constexpr (kNumber == 0) return false;
  hav_reached[kNumber] = 1;
  return hav_mutant == kNumber;
}

// The comparison `left OP right`: kEdge the other one at the edge, kNot the opposite.
#define HAV_COMPARISON(name, op, atEdge)                  \
  template <int kEdge, int kNot, class A, class B>        \
  inline bool name(const A& left, const B& right) {       \
    if (On<kEdge>()) return left atEdge right;            \
    return On<kNot>() ? !(left op right) : left op right; \
  }
HAV_COMPARISON(Less, <, <=)
HAV_COMPARISON(LessOrEqual, <=, <)
HAV_COMPARISON(Greater, >, >=)
HAV_COMPARISON(GreaterOrEqual, >=, >)

// The operation, or the other one.
#define HAV_ARITHMETIC(name, op, other)                                                            \
  template <int kNumber, class A, class B>                                                         \
  inline auto name(const A& left, const B& right) {                                                \
    return On<kNumber>() ? static_cast<decltype(left op right)>(left other right) : left op right; \
  }
HAV_ARITHMETIC(Plus, +, -)
HAV_ARITHMETIC(Minus, -, +)
HAV_ARITHMETIC(Times, *, +)
HAV_ARITHMETIC(Over, /, *)
HAV_ARITHMETIC(Modulo, %, +)
HAV_ARITHMETIC(And, &, |)
HAV_ARITHMETIC(Or, |, &)

template <int kNumber, class A, std::size_t kSize, class B>
inline A* Plus(A (&left)[kSize], const B& right) {
  return On<kNumber>() ? left - right : left + right;
}

#define HAV_ASSIGNMENT(name, op, other)               \
  template <int kNumber, class A, class B>            \
  inline A& name(A& left, const B& right) {           \
    On<kNumber>() ? left other right : left op right; \
    return left;                                      \
  }
HAV_ASSIGNMENT(PlusIs, +=, -=)
HAV_ASSIGNMENT(MinusIs, -=, +=)
HAV_ASSIGNMENT(TimesIs, *=, /=)
HAV_ASSIGNMENT(OverIs, /=, *=)
HAV_ASSIGNMENT(AndIs, &=, |=)
HAV_ASSIGNMENT(OrIs, |=, &=)

}  // namespace hav::mutants
