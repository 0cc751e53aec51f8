// Status checks: the exact status that an expression throws, 0 when it throws nothing.
#pragma once

#include <gtest/gtest.h>

#include "havcore/THAVException.h"

namespace havtest {

template <class F>
unsigned StatusOf(F&& call) {
  try {
    call();
    return 0;
  } catch (const NORVHAV20::THAVException& failure) {
    return failure.GetStatusCode();
  }
}

}  // namespace havtest

#define EXPECT_STATUS(status, expression) \
  EXPECT_EQ(static_cast<unsigned>(status), havtest::StatusOf([&] { (void)(expression); }))
#define ASSERT_STATUS(status, expression) \
  ASSERT_EQ(static_cast<unsigned>(status), havtest::StatusOf([&] { (void)(expression); }))
