// ObjectPathText: the text of an object path, taken apart and put together:
// [namespace:]Class[.Key=value[,Key=value]...].
//
// Errors: THAVException 15 for text that is no object path.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

class ICIMNamespace;

struct TKeyText {
  enum EKind { kNull, kBoolean, kNumber, kQuoted };

  std::string name;
  EKind kind;
  std::string text;  // as written; of quoted text what stands between the quotes, unescaped
};

struct TObjectPathText {
  std::string namespaceName;  // empty: none
  std::string className;
  std::vector<TKeyText> keys;  // in the order of the text, repeated names included
};

// Whether `text` can name anything: a letter or '_', then letters, digits and '_'.
bool IsCimName(std::string_view text);

TObjectPathText ParseObjectPath(std::string_view text);

// The value that the text alone gives: NULL without a type, boolean, uint64, sint64 where it
// is negative, real64, string.
TCIMValue UntypedKeyValue(const TKeyText& key);
// The value of exactly `type` that the text gives, nothing where it does not fit the type.
// References are bound in `home`.
std::optional<TCIMValue> TypedKeyValue(const TKeyText& key, ECIMType type,
                                       const boost::shared_ptr<ICIMNamespace>& home);

// Writes text as paths have it: in double quotes, with \ before each " and \ in it.
void AppendQuoted(std::string& out, std::string_view text);
// About how many characters a key value takes in a path, to reserve room by.
std::size_t KeyTextSize(const TCIMValue& value);

}  // namespace NORVHAV20
