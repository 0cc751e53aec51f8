#include "inmem/values/ModelClock.h"

namespace NORVHAV20 {

std::atomic<std::uint64_t> ModelClock::s_qualifiers{0};

}  // namespace NORVHAV20
