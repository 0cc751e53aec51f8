// ReadText: the whole of what the user names, in bounds.
//
// Errors: THostError that names it, for what cannot be opened or read to its end, and for what is
//         larger than 256 MiB; no more than that is ever in memory.
#pragma once

#include <istream>
#include <string>

namespace havhost {

// `name` is what errors call the stream.
std::string ReadText(std::istream& in, const std::string& name);
std::string ReadTextFile(const std::string& name);

}  // namespace havhost
