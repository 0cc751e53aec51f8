#include "havhost/TOutputBuffer.h"

#include <cerrno>

namespace havhost {

TOutputBuffer::int_type TOutputBuffer::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  if (std::fputc(c, m_file) == EOF) throw TOutputError(errno);
  return c;
}

std::streamsize TOutputBuffer::xsputn(const char* text, std::streamsize size) {
  const auto bytes = static_cast<std::size_t>(size);
  if (std::fwrite(text, 1, bytes, m_file) != bytes) throw TOutputError(errno);
  return size;
}

int TOutputBuffer::sync() {
  if (std::fflush(m_file) != 0) throw TOutputError(errno);
  return 0;
}

}  // namespace havhost
