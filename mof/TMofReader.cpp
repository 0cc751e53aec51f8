#include "mof/TMofReader.h"

#include <utility>

#include "mof/TMofParser.h"

namespace hav::mof {

TMofReader::TMofReader(IMofSource& source, TMofReport& report, TProgress progress)
    : m_source(source), m_report(report), m_progress(std::move(progress)) {}

void TMofReader::Read(const std::vector<std::string>& names) {
  for (auto name = names.rbegin(); name != names.rend(); ++name)
    m_requests.push_back({*name, kNone, 0});
  while (!m_requests.empty() && !m_report.IsFull()) {
    const auto request = std::move(m_requests.back());
    m_requests.pop_back();
    ReadOne(request);
    if (m_progress) m_progress(m_files.size(), m_files.size() + m_requests.size());
  }
  if (!m_requests.empty()) m_complete = false;
  m_report.files = m_files.size();
}

void TMofReader::ReadOne(const TRequest& request) {
  const bool included = request.includer != kNone;
  std::string identity;
  if (!m_source.Find(request.name, included ? m_files[request.includer]->text.GetName() : "",
                     identity))
    return Fail(request, "file '" + request.name + "' is not found");
  const auto [known, isNew] = m_byIdentity.emplace(identity, m_files.size());
  if (!isNew) return WarnOfCircle(request, known->second);

  const auto depth = included ? m_depths[request.includer] + 1 : 0;
  if (depth > kMaxIncludeDepth)
    return Fail(request, "files are included more than " + std::to_string(kMaxIncludeDepth) +
                             " levels deep");
  if (m_files.size() >= kMaxFiles)
    return Fail(request, "there are more than " + std::to_string(kMaxFiles) + " files");
  std::string text;
  if (!m_source.Read(identity, text)) return Fail(request, "file '" + request.name + "': " + text);
  if (text.size() > TMofText::kMaxSize) return Fail(request, "the text is too large");

  m_files.push_back(std::make_unique<TMofFile>(identity, std::move(text)));
  m_includers.push_back(request.includer);
  m_depths.push_back(depth);
  TMofParser::Parse(*m_files.back(), m_report);
  if (m_files.back()->isDamaged) m_complete = false;
  RequestIncludes(m_files.size() - 1);
}

void TMofReader::RequestIncludes(std::size_t index) {
  const auto& pragmas = m_files[index]->pragmas;
  for (auto pragma = pragmas.rbegin(); pragma != pragmas.rend(); ++pragma)
    if (pragma->kind == TMofPragma::EKind::kInclude)
      m_requests.push_back({pragma->value, index, pragma->offset});
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
