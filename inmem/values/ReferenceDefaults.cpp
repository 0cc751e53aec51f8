#include "inmem/values/ReferenceDefaults.h"

namespace NORVHAV20 {

std::atomic<std::uint64_t> ReferenceDefaults::s_changed{0};
std::atomic<std::uint64_t> ReferenceDefaults::s_retyped{0};

}  // namespace NORVHAV20
