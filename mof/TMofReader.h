// TMofReader: reads files and everything that they include into syntax trees.
//
// Every file is read once, however often and from wherever it is included, and there where it
// is included first. Files stand in the order in which reading met them. Texts are UTF-8, or
// UTF-16, with a byte-order mark or without.
//
// Errors: collected in the report: files that are not found or cannot be read, includes that
//         are nested too deep, and what TMofParser finds.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "mof/IMofSource.h"
#include "mof/MofSyntax.h"
#include "mof/TMofParser.h"
#include "mof/TMofReport.h"

namespace hav::mof {

class TMofReader {
 public:
  using TFiles = std::vector<std::unique_ptr<TMofFile>>;
  // Files read so far, and those known of.
  using TProgress = std::function<void(std::size_t done, std::size_t total)>;

  static constexpr std::size_t kMaxIncludeDepth = 256;
  static constexpr std::size_t kMaxFiles = 100000;

  // `pieceSize`: of the texts that it reads, as TMofFile has it.
  TMofReader(IMofSource& source, TMofReport& report, TProgress progress,
             TMofOffset pieceSize = TMofText::kPieceSize);

  void Read(const std::vector<std::string>& names);

  const TFiles& GetFiles() const noexcept { return m_files; }
  // False when something is missing from the trees: what they refer to may be there.
  bool IsComplete() const noexcept { return m_complete; }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct TRequest {
    std::string name;
    std::size_t includer;  // index into m_files, kNone for what the user named
    TMofOffset offset;
  };
  // A file that is being read, with those that include it below it.
  struct TOpen {
    std::size_t file;
    std::unique_ptr<TMofParser> parser;
    TMofOffset begin;  // where reading goes on
  };

  void ReadOn();
  void Open(const TRequest& request);
  bool ReadText(const TRequest& request, const std::string& identity, std::string& text);
  void WarnOfCircle(const TRequest& request, std::size_t wanted);
  void Fail(const TRequest& request, std::string text);

  IMofSource& m_source;
  TMofReport& m_report;
  TProgress m_progress;
  TMofOffset m_pieceSize;
  TFiles m_files;
  std::vector<std::size_t> m_includers;  // of each file
  std::unordered_map<std::string, std::size_t> m_byIdentity;
  std::vector<TOpen> m_open;  // a stack
  bool m_complete = true;
};

}  // namespace hav::mof
