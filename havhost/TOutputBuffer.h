// TOutputBuffer: a stream buffer over a C stream that says why a write failed.
//
// Ownership: the C stream belongs to the caller.
// Errors:    TOutputError; a stream over it lets that through when its exceptions() have
//            badbit.
#pragma once

#include <cstdio>
#include <streambuf>
#include <system_error>

namespace havhost {

class TOutputError : public std::system_error {
 public:
  explicit TOutputError(int error)
      : std::system_error(error, std::generic_category(), "cannot write the output") {}

  // Whoever was reading has seen enough and closed the pipe.
  bool IsReaderGone() const noexcept { return code() == std::errc::broken_pipe; }
};

class TOutputBuffer : public std::streambuf {
 public:
  explicit TOutputBuffer(std::FILE* file) : m_file(file) {}

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

 private:
  std::FILE* m_file;
};

}  // namespace havhost
