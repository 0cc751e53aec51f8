#include "havhost/TProgressLine.h"

#include <algorithm>

namespace havhost {

TProgressLine::TProgressLine(const TConsole& console, TDuration delay)
    : m_console(console), m_next(TClock::now() + delay) {}

TProgressLine::~TProgressLine() {
  if (m_width == 0) return;
  Replace({});
  m_console.err << '\r' << std::flush;
}

void TProgressLine::Show(const std::string& what, std::size_t done, std::size_t total) {
  if (!m_console.showsProgress) return;
  const auto now = TClock::now();
  if (now < m_next) return;
  m_next = now + TDuration(100);
  Replace(what + ": " + std::to_string(done) + " of " + std::to_string(total));
}

// Blanks over what is left of the line before: not every terminal knows how to erase.
void TProgressLine::Replace(const std::string& line) {
  const auto rest = m_width - std::min(m_width, line.size());
  m_console.err << '\r' << line << std::string(rest, ' ') << std::flush;
  m_width = line.size();
}

}  // namespace havhost
