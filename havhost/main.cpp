// The host program's process: its command line, its streams and its exit status.
//
// An interrupt ends the process at once: it leaves nothing behind, as nothing but its output
// was written.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
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
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "havhost/Program.h"
#include "havhost/TOutputBuffer.h"

namespace {

bool IsSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

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
  // A console would be given one byte at a time, and characters of several bytes in pieces.
  constexpr std::size_t kPiece = 1 << 16;
  std::setvbuf(stdout, nullptr, _IOFBF, kPiece);
}

bool IsTerminal(std::FILE* file) { return _isatty(_fileno(file)) != 0; }

havhost::TTerminal Terminal() {
  constexpr DWORD kVirtualTerminal = 0x0004;
  havhost::TTerminal terminal;
  terminal.isThere = IsTerminal(stdout);
  const HANDLE screen = GetStdHandle(STD_OUTPUT_HANDLE);
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (GetConsoleScreenBufferInfo(screen, &info)) {
    terminal.width = static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
    terminal.height = static_cast<std::size_t>(info.srWindow.Bottom - info.srWindow.Top + 1);
  }
  DWORD mode = 0;
  terminal.hasColour = !IsSet("NO_COLOR") && GetConsoleMode(screen, &mode) &&
                       SetConsoleMode(screen, mode | kVirtualTerminal);
  return terminal;
}

#else

std::vector<std::string> Arguments(int count, char** values) {
  return {values + 1, values + count};
}

// Without the signal, a closed pipe shows as an error of the write.
void PrepareStreams() { std::signal(SIGPIPE, SIG_IGN); }

bool IsTerminal(std::FILE* file) { return isatty(fileno(file)) != 0; }

bool IsUtf8Locale() {
  for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"})
    if (IsSet(name)) {
      const std::string locale = std::getenv(name);
      for (const char* const charset : {"UTF-8", "utf-8", "UTF8", "utf8"})
        if (locale.find(charset) != std::string::npos) return true;
      return false;
    }
  return false;
}

// Shells say with these that they could not start the command.
bool IsStarted(int status) {
  return !WIFEXITED(status) || (WEXITSTATUS(status) != 126 && WEXITSTATUS(status) != 127);
}

bool Page(const std::string& text) {
  const char* const named = std::getenv("PAGER");
  const std::string pager = named == nullptr ? "less" : named;
  if (pager.empty() || pager == "cat") return false;
  // Colours as they are; a text that fits after all needs no key to leave it.
  ::setenv("LESS", "FRX", 0);
  std::FILE* const reader = ::popen(pager.c_str(), "w");
  if (reader == nullptr) return false;
  // An interrupt is for the pager, which would leave the terminal in disorder without us.
  const auto before = std::signal(SIGINT, SIG_IGN);
  std::fwrite(text.data(), 1, text.size(), reader);
  const int status = ::pclose(reader);
  std::signal(SIGINT, before);
  return IsStarted(status);
}

havhost::TTerminal Terminal() {
  havhost::TTerminal terminal;
  terminal.isThere = IsTerminal(stdout);
  const char* const kind = std::getenv("TERM");
  terminal.hasColour = !IsSet("NO_COLOR") && kind != nullptr && std::string(kind) != "dumb";
  terminal.isUtf8 = IsUtf8Locale();
  winsize size = {};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 && size.ws_row != 0) {
    terminal.width = size.ws_col;
    terminal.height = size.ws_row;
  }
  terminal.page = Page;
  return terminal;
}

#endif

}  // namespace

int main(int count, char** values) {
  PrepareStreams();
  havhost::TOutputBuffer buffer(stdout);
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit);
  return havhost::Run(Arguments(count, values),
                      {out, std::cerr, IsTerminal(stderr), &std::cin, Terminal()});
}
