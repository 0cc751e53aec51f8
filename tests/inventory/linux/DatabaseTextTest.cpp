// Texts of the device database.
#include <gtest/gtest.h>

#include "inventory/linux/ISystemCalls.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST(DatabaseText, DecodesHexadecimalBytes) {
  EXPECT_EQ(DecodeDatabaseText("boot\\x20area"), "boot area");
  EXPECT_EQ(DecodeDatabaseText("\\x41\\x"), "A\\x");
  EXPECT_EQ(DecodeDatabaseText("\\xZZ\\n"), "\\xZZ\\n");
  EXPECT_EQ(DecodeDatabaseText(""), "");
}

}  // namespace
}  // namespace havtest
