#include "havhost/PathHint.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"
#include "havcore/client/FoldedName.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

std::vector<std::string> KeyNames(const ICIMClass& cls) {
  std::vector<std::string> names;
  cls.EnumerateKeyNames(
      [&](const std::string* name) {
        names.push_back(*name);
        return true;
      },
      {});
  return names;
}

bool StandsInQuotes(ECIMType type) {
  return type == kCIMString || type == kCIMChar16 || type == kCIMDateTime || type == kCIMReference;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// Where the value at the beginning of `text` ends: before the next key, for a value without
// quotes may have commas of its own.
std::size_t ValueEnd(std::string_view text, const std::vector<std::string>& keys) {
  for (auto comma = text.find(','); comma != text.npos; comma = text.find(',', comma + 1)) {
    const auto name = text.substr(comma + 1, text.find('=', comma) - comma - 1);
    if (std::any_of(keys.begin(), keys.end(), [&](const auto& key) { return SameName(key, name); }))
      return comma;
  }
  return text.size();
}

std::string QuoteKeys(const ICIMClass& cls, std::string_view text) {
  const auto names = KeyNames(cls);
  std::string quoted;
  while (!text.empty()) {
    const auto equals = std::min(text.find('='), text.size() - 1);
    const std::string name(text.substr(0, equals));
    quoted.append(text.substr(0, equals + 1));
    text.remove_prefix(equals + 1);
    const auto value = text.substr(0, ValueEnd(text, names));
    const bool isBare = value.empty() || value[0] != '"';
    if (isBare && !SameName(value, "NULL") &&
        StandsInQuotes(cls.GetPropertyDecl(name, {})->GetType({})))
      quoted += Quoted(value);
    else
      quoted += value;
    text.remove_prefix(value.size());
    if (text.empty()) break;
    quoted += ',';
    text.remove_prefix(1);
  }
  return quoted;
}

}  // namespace

std::string WithQuotes(ICIMNamespace& target, const std::string& path) {
  const auto point = path.find('.');
  const auto colon = path.rfind(':', point);
  const auto classAt = colon == path.npos ? 0 : colon + 1;
  if (point == path.npos) return {};
  try {
    const auto cls = target.GetClass(path.substr(classAt, point - classAt), {});
    const auto quoted = path.substr(0, point + 1) + QuoteKeys(*cls, path.substr(point + 1));
    TCIMReference::Parse(quoted, {});
    return quoted == path ? "" : quoted;
  } catch (const THAVException&) {
    return {};
  }
}

#if defined(_WIN32)
std::string QuotesHint(const std::string& path) {
  std::string argument;
  std::size_t backslashes = 0;
  for (const char c : path) {
    // Backslashes count as such unless a quotation mark follows.
    if (c == '"') argument.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    argument += c;
  }
  return "the shell has taken its quotes away; write \"" + argument + "\"";
}
#else
std::string QuotesHint(const std::string& path) {
  std::string argument;
  for (const char c : path)
    if (c == '\'')
      argument += "'\\''";
    else
      argument += c;
  return "the shell has taken its quotes away; write '" + argument + "'";
}
#endif

}  // namespace havhost
