#include "inmem/values/Failure.h"

#include "havcore/ILogger.h"
#include "havcore/THAVException.h"
#include "havcore/TRootObject.h"

namespace NORVHAV20 {

void Throw(EHAVStatusCode status) { throw THAVException(status); }

void LogError(const std::string& text) { TRootObject::GetCoreLogger()->Log(ILogger::kError, text); }

void LogNote(const std::string& text) { TRootObject::GetCoreLogger()->Log(ILogger::kNote, text); }

}  // namespace NORVHAV20
