// ReadWhole: a file from where it stands to its end, by whatever reads it.
//
// Threads: as the reader.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string>

namespace hav::inventory {

// As read(2) of one file: the number of bytes put into the buffer, 0 at the end, -1 with errno.
using TReadSome = std::function<ssize_t(char* buffer, std::size_t size)>;

// Reads into `text` until the end. Returns 0; EFBIG, with little more than `limit` bytes read, for
// what is larger or never ends; else the error of the read that failed. An interrupted read is
// repeated.
int ReadWhole(const TReadSome& read, std::size_t limit, std::string& text);

}  // namespace hav::inventory
