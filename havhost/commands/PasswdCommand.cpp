// havhost passwd: a user of the server, with a password.
#include <iostream>
#include <memory>
#include <string>

#include "havhost/CommandLine.h"
#include "havhost/THostError.h"

#if defined(HAVHOST_TLS)
#include "havhost/server/TUsers.h"
#endif

#if defined(_WIN32)
#include <io.h>
#include <windows.h>

#include <cstdio>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace havhost {

namespace {

#if !defined(_WIN32)

// While it lives, what is typed is not shown.
class TNoEcho {
 public:
  TNoEcho() {
    if (::tcgetattr(STDIN_FILENO, &m_before) != 0) return;
    auto hidden = m_before;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    m_isHidden = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden) == 0;
  }
  ~TNoEcho() {
    if (m_isHidden) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
  }
  TNoEcho(const TNoEcho&) = delete;
  TNoEcho& operator=(const TNoEcho&) = delete;

 private:
  termios m_before{};
  bool m_isHidden = false;
};

bool IsTerminal() { return ::isatty(STDIN_FILENO) != 0; }

#else

class TNoEcho {
 public:
  TNoEcho() {
    if (GetConsoleMode(m_input, &m_before) != 0)
      m_isHidden = SetConsoleMode(m_input, m_before & ~DWORD{ENABLE_ECHO_INPUT}) != 0;
  }
  ~TNoEcho() {
    if (m_isHidden) SetConsoleMode(m_input, m_before);
  }
  TNoEcho(const TNoEcho&) = delete;
  TNoEcho& operator=(const TNoEcho&) = delete;

 private:
  HANDLE m_input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD m_before = 0;
  bool m_isHidden = false;
};

bool IsTerminal() { return _isatty(_fileno(stdin)) != 0; }

#endif

std::string ReadLine() {
  std::string line;
  if (!std::getline(std::cin, line)) throw THostError("no password is given on standard input");
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

std::string Ask(const TConsole& console, const char* question) {
  console.err << question << std::flush;
  [[maybe_unused]] const TNoEcho hidden;
  auto answer = ReadLine();
  console.err << '\n';
  return answer;
}

// Who types is asked twice; a program gives one line.
std::string ReadPassword(const TConsole& console) {
  if (!IsTerminal()) return ReadLine();
  auto password = Ask(console, "Password: ");
  if (Ask(console, "Again: ") != password) throw THostError("the two passwords differ");
  return password;
}

}  // namespace

void AddPasswdCommand(CLI::App& program, TCommandLine& line) {
  const auto file = std::make_shared<std::string>();
  const auto user = std::make_shared<std::string>();
  auto& command = AddCommand(
      program, line,
      {"passwd", "Give a user of the server a password, which is read from standard input",
       "havhost passwd users.txt operator"},
      [file, user](const TConsole& console) {
#if defined(HAVHOST_TLS)
        TUsers::Set(*file, *user, ReadPassword(console));
#else
        static_cast<void>(console), static_cast<void>(&ReadPassword);
        throw THostError("this build has no users: it was made without OpenSSL");
#endif
      });
  command.add_option("FILE", *file, "The file of users; it is made when it is not there")
      ->required();
  command.add_option("USER", *user, "Name of the user")->required();
}

}  // namespace havhost
