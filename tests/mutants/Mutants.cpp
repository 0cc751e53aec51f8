#include "tests/mutants/Mutants.h"

namespace hav::mutants {

int hav_mutant = 0;
unsigned char hav_reached[kMost] = {};

}  // namespace hav::mutants
