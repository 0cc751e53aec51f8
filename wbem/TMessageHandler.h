// TMessageHandler: CIM operations over HTTP, without the transport: what is posted is checked,
// read and executed, and answered by a CIM message or by an HTTP status that says why not.
//
// Ownership: borrows the repository.
// Threads:   that of the namespaces, also for what replies still have to write.
// Errors:    none but running out of memory; what is wrong with a request is in the reply.
#pragma once

#include "wbem/THttpMessage.h"
#include "wbem/TRepository.h"

namespace hav::wbem {

class TMessageHandler {
 public:
  // Pieces of an answer are about this long.
  static constexpr std::size_t kPieceSize = 64 * 1024;  // bytes

  explicit TMessageHandler(TRepository& repository) : m_repository(repository) {}

  // POST and M-POST.
  THttpReply Handle(const THttpRequest& request) const;

 private:
  THttpReply Answer(const THttpRequest& request, const std::string& prefix) const;

  TRepository& m_repository;
};

}  // namespace hav::wbem
