#include <ostream>

#include "TCIMValueShared.h"
#include "ValueText.h"
#include "havcore/TCIMValue.h"

namespace NORVHAV20 {
namespace {

constexpr const char* kElementNames[] = {
    "none",   "boolean", "uint8",  "sint8",  "uint16", "sint16", "uint32",   "sint32",
    "uint64", "sint64",  "real32", "real64", "char16", "string", "datetime", "reference"};

}  // namespace

std::ostream& operator<<(std::ostream& out, const TCIMValue::TCIMType& type) {
  const ECIMType code = type;
  if (code >= 2 * kCIMArray) return out << "unknown";
  // One insertion, so that the width of a column applies to the whole name.
  return out << std::string(kElementNames[ElementOf(code)]) + (code & kCIMArray ? "[]" : "");
}

std::string TCIMValue::ToString(unsigned char radix) const {
  const int base = radix < 2 || radix > 36 ? 10 : radix;
  std::string text;
  AppendTo(text, base, 0);
  return text;
}

void TCIMValue::AppendTo(std::string& out, int radix, unsigned nesting) const {
  if (m_null) {
    out += "NULL";
    return;
  }
  switch (m_type) {
    case kCIMBoolean: out += m_content.bits != 0 ? "TRUE" : "FALSE"; break;
    case kCIMSInt8:
    case kCIMSInt16:
    case kCIMSInt32:
    case kCIMSInt64: AppendInteger(out, m_content.integer, radix); break;
    case kCIMReal32: AppendReal(out, m_content.real32); break;
    case kCIMReal64: AppendReal(out, m_content.real64); break;
    case kCIMChar16: AppendChar16(out, static_cast<char16_t>(m_content.bits)); break;
    case kCIMString: out += Shared<TSharedText>().Text(); break;
    case kCIMDateTime: out += Shared<TSharedDateTime>().value.ToString(); break;
    case kCIMReference: Shared<TSharedReference>().value.AppendPath(out, true, nesting); break;
    default:
      if (IsArray())
        AppendElementsTo(out, radix, nesting);
      else
        AppendInteger(out, m_content.bits, radix);
  }
}

void TCIMValue::AppendElementsTo(std::string& out, int radix, unsigned nesting) const {
  const char* separator = "";
  out += '{';
  for (const TCIMValue& element : Shared<TSharedArray>().value) {
    out += separator;
    element.AppendTo(out, radix, nesting);
    separator = ", ";
  }
  out += '}';
}

}  // namespace NORVHAV20
