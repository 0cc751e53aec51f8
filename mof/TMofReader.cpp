#include "mof/TMofReader.h"

#include <utility>

#include "mof/MofCharacters.h"

namespace hav::mof {

TMofReader::TMofReader(IMofSource& source, TMofReport& report, TProgress progress,
                       TMofOffset pieceSize)
    : m_source(source), m_report(report), m_progress(std::move(progress)), m_pieceSize(pieceSize) {}

void TMofReader::Read(const std::vector<std::string>& names) {
  auto left = names.size();
  for (const auto& name : names) {
    Open({name, kNone, 0});
    --left;
    while (!m_open.empty() && !m_report.IsFull()) {
      const auto before = m_open.size();
      ReadOn();
      if (m_progress && m_open.size() < before)
        m_progress(m_files.size() - m_open.size(), m_files.size() + left);
    }
  }
  if (m_report.IsFull()) m_complete = false;
  m_report.files = m_files.size();
}

void TMofReader::ReadOn() {
  auto& open = m_open.back();
  auto& file = *m_files[open.file];
  if (open.begin != 0) file.text.AddSegment(open.begin, m_report.BeginSegment());
  if (!open.parser->ReadOn()) {
    if (file.isDamaged) m_complete = false;
    m_open.pop_back();
    if (!m_report.HasErrors()) file.CutUp();
    return;
  }
  const auto& pragma = file.pragmas.back();
  open.begin = pragma.offset + 1;
  Open({pragma.value, open.file, pragma.offset});
}

void TMofReader::Open(const TRequest& request) {
  if (m_report.IsFull()) return;
  const bool included = request.includer != kNone;
  std::string identity;
  if (!m_source.Find(request.name, included ? m_files[request.includer]->text.GetName() : "",
                     identity))
    return Fail(request, "file '" + request.name + "' is not found");
  const auto [known, isNew] = m_byIdentity.emplace(identity, m_files.size());
  if (!isNew) return WarnOfCircle(request, known->second);

  if (m_open.size() > kMaxIncludeDepth)
    return Fail(request, "files are included more than " + std::to_string(kMaxIncludeDepth) +
                             " levels deep");
  if (m_files.size() >= kMaxFiles)
    return Fail(request, "there are more than " + std::to_string(kMaxFiles) + " files");
  std::string text;
  if (!ReadText(request, identity, text)) return;

  m_files.push_back(std::make_unique<TMofFile>(identity, std::move(text)));
  m_files.back()->pieceSize = m_pieceSize;
  m_includers.push_back(request.includer);
  m_files.back()->text.AddSegment(0, m_report.BeginSegment());
  m_open.push_back(
      {m_files.size() - 1, std::make_unique<TMofParser>(*m_files.back(), m_report), 0});
}

bool TMofReader::ReadText(const TRequest& request, const std::string& identity, std::string& text) {
  if (!m_source.Read(identity, text)) {
    Fail(request, "file '" + request.name + "': " + text);
    return false;
  }
  if (!DecodeUtf16(text)) {
    Fail(request, "file '" + request.name + "' begins as UTF-16 and does not go on so");
    return false;
  }
  if (text.size() > TMofText::kMaxSize) {
    Fail(request, "the text is too large");
    return false;
  }
  return true;
}

void TMofReader::WarnOfCircle(const TRequest& request, std::size_t wanted) {
  for (auto file = request.includer; file != kNone; file = m_includers[file]) {
    if (file != wanted) continue;
    m_report.AddWarning(m_files[request.includer]->text, request.offset,
                        "file '" + request.name + "' includes itself; it is read once");
    return;
  }
}

void TMofReader::Fail(const TRequest& request, std::string text) {
  m_complete = false;
  if (request.includer == kNone)
    m_report.AddError(request.name, std::move(text));
  else
    m_report.AddError(m_files[request.includer]->text, request.offset, std::move(text));
}

}  // namespace hav::mof
