// The host program's process: its command line, its streams and its exit status.
//
// An interrupt ends the process at once: it leaves nothing behind, as nothing but its output
// was written.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>

#include <shellapi.h>
#else
#include <unistd.h>
#endif

#include "havhost/Program.h"
#include "havhost/TOutputBuffer.h"

namespace {

#if defined(_WIN32)

std::string Utf8(const wchar_t* wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
  text.resize(text.size() - 1);
  return text;
}

// The arguments of main are in the system's code page, which need not hold them all.
std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Utf8(wide[i]));
  LocalFree(wide);
  return arguments;
}

void PrepareStreams() {
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
}

bool IsTerminal(std::FILE* file) { return _isatty(_fileno(file)) != 0; }

#else

std::vector<std::string> Arguments(int count, char** values) {
  return {values + 1, values + count};
}

// Without the signal, a closed pipe shows as an error of the write.
void PrepareStreams() { std::signal(SIGPIPE, SIG_IGN); }

bool IsTerminal(std::FILE* file) { return isatty(fileno(file)) != 0; }

#endif

}  // namespace

int main(int count, char** values) {
  PrepareStreams();
  havhost::TOutputBuffer buffer(stdout);
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit);
  return havhost::Run(Arguments(count, values), {out, std::cerr, IsTerminal(stderr), &std::cin});
}
