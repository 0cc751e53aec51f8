#include "havhost/shell/TLineReader.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

#if defined(HAVHOST_LIBEDIT)
#include <histedit.h>
#include <unistd.h>
#endif

namespace havhost {

namespace {

class TPlainReader : public TLineReader {
 public:
  explicit TPlainReader(std::istream* in) : m_in(in) {}
  bool Read(std::string& line) override { return m_in && std::getline(*m_in, line); }

 private:
  std::istream* m_in;
};

#if defined(HAVHOST_LIBEDIT)

constexpr char kPrompt[] = "havhost> ";
constexpr int kKeptLines = 1000;

// Where programs keep what they remember; empty when nobody says where that is.
std::filesystem::path HistoryFile() {
  const char* const state = std::getenv("XDG_STATE_HOME");
  const char* const home = std::getenv("HOME");
  std::filesystem::path folder;
  if (state && *state != '\0')
    folder = state;
  else if (home && *home != '\0')
    folder = std::filesystem::path(home) / ".local" / "state";
  return folder.empty() ? folder : folder / "havhost" / "history";
}

class TEditedReader : public TLineReader {
 public:
  explicit TEditedReader(TComplete complete)
      : m_complete(std::move(complete)),
        m_file(HistoryFile()),
        m_history(history_init()),
        m_editor(el_init("havhost", stdin, stdout, stderr)) {
    history(m_history, &m_event, H_SETSIZE, kKeptLines);
    history(m_history, &m_event, H_SETUNIQUE, 1);
    if (!m_file.empty()) history(m_history, &m_event, H_LOAD, m_file.c_str());
    el_set(m_editor, EL_CLIENTDATA, this);
    el_set(m_editor, EL_PROMPT, &TEditedReader::Prompt);
    el_set(m_editor, EL_EDITOR, "emacs");
    el_set(m_editor, EL_SIGNAL, 1);
    el_set(m_editor, EL_HIST, history, m_history);
    el_set(m_editor, EL_ADDFN, "havhost-complete", "Complete the word", &TEditedReader::Complete);
    el_set(m_editor, EL_BIND, "^I", "havhost-complete", nullptr);
    el_source(m_editor, nullptr);
  }

  ~TEditedReader() override {
    if (!m_file.empty()) {
      std::error_code ignored;
      std::filesystem::create_directories(m_file.parent_path(), ignored);
      history(m_history, &m_event, H_SAVE, m_file.c_str());
    }
    el_end(m_editor);
    history_end(m_history);
  }

  bool Read(std::string& line) override {
    int size = 0;
    const char* const read = el_gets(m_editor, &size);
    if (!read || size <= 0) {
      std::cout << std::endl;
      return false;
    }
    line.assign(read, static_cast<std::size_t>(size));
    if (line.back() == '\n') line.pop_back();
    if (line.find_first_not_of(" \t") != std::string::npos)
      history(m_history, &m_event, H_ENTER, line.c_str());
    return true;
  }

 private:
  static char* Prompt(EditLine*) {
    static char prompt[sizeof kPrompt] = "havhost> ";
    return prompt;
  }

  static std::string CommonBegin(const std::vector<std::string>& texts) {
    auto common = texts.front();
    for (const auto& text : texts) {
      std::size_t same = 0;
      while (same < common.size() && same < text.size() && common[same] == text[same]) ++same;
      common.resize(same);
    }
    return common;
  }

  // Nothing may leave it: the library that calls it knows no exceptions.
  static unsigned char Complete(EditLine* editor, int) noexcept {
    try {
      void* self = nullptr;
      el_get(editor, EL_CLIENTDATA, &self);
      return static_cast<TEditedReader*>(self)->CompleteWord();
    } catch (...) {
      return CC_ERROR;
    }
  }

  unsigned char CompleteWord() {
    const auto* const info = el_line(m_editor);
    const std::string line(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer));
    const auto [found, begin, isWord] = m_complete(line);
    if (found.empty()) return CC_ERROR;
    const auto typed = line.size() - begin;
    auto text = CommonBegin(found);
    if (found.size() == 1 && isWord) text += ' ';
    if (text.size() > typed || (found.size() == 1 && text != line.substr(begin))) {
      el_deletestr(m_editor, static_cast<int>(typed));
      return el_insertstr(m_editor, text.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
    }
    if (found.size() == 1) return CC_NORM;
    std::cout << '\n';
    for (const auto& one : found) std::cout << one << '\n';
    std::cout.flush();
    return CC_REDISPLAY;
  }

  TComplete m_complete;
  std::filesystem::path m_file;
  HistEvent m_event = {};
  History* m_history;
  EditLine* m_editor;
};

bool IsTerminal(const TConsole& console) {
  return console.in == &std::cin && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
}

#endif

}  // namespace

std::unique_ptr<TLineReader> TLineReader::Make(const TConsole& console, TComplete complete) {
#if defined(HAVHOST_LIBEDIT)
  if (IsTerminal(console)) return std::make_unique<TEditedReader>(std::move(complete));
#else
  static_cast<void>(complete);
#endif
  return std::make_unique<TPlainReader>(console.in);
}

}  // namespace havhost
