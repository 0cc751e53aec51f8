#include "inmem/values/ModelClock.h"

namespace NORVHAV20 {

std::atomic<std::uint64_t> ModelClock::s_schema{0};
std::atomic<std::uint64_t> ModelClock::s_paths{0};

}  // namespace NORVHAV20
