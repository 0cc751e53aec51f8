#include "havcore/THAVStatusCode.h"

namespace NORVHAV20 {
namespace {

struct TSentence {
  EHAVStatusCode code;
  std::string text;
};

// Made when the library is loaded, not on first use: what() must not allocate, and those who
// depend on the library are gone before the sentences are.
const TSentence kSentences[] = {
    {kHAVSuccess, "The operation succeeded."},
    {kHAVNotSupported, "The operation is not supported."},
    {kHAVTypesDiffer, "The value or declaration is not of the type required here."},
    {kHAVNotFound, "The element was not found."},
    {kHAVAlreadyDefined, "An element of this name is already defined."},
    {kHAVClassInUse, "The class is still in use."},
    {kHAVKeyIsNull, "A key property of the instance is NULL."},
    {kHAVReferenceOutsideAssociation,
     "A reference property is declared in a class that is not an association."},
    {kHAVInvalidName, "The name is not a valid CIM name."},
    {kHAVConflictingQualifier, "The qualifier conflicts with one that the element already has."},
    {kHAVUnderlyingNamespaceRefused, "The namespace does not accept underlying namespaces."},
};
const std::string kNoSentence = "This status code has no text of its own.";

}  // namespace

const std::string& THAVStatusCode::TranslateStatusCode() const {
  for (const auto& sentence : kSentences)
    if (sentence.code == m_code) return sentence.text;
  return kNoSentence;
}

}  // namespace NORVHAV20
