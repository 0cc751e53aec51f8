#include "havhost/Lookup.h"

#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"
#include "havcore/client/FoldedName.h"
#include "havhost/PathHint.h"
#include "havhost/THostError.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

TCIMReference ParsePath(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings) {
  try {
    auto path = TCIMReference::Parse(PathOfPrintable(settings.path), target);
    const auto& name = path.GetNameSpaceName();
    if (!name.empty() && !SameName(name, settings.namespaceName))
      throw THostError("the path names the namespace " + name + ", and this is " +
                       settings.namespaceName);
    return path;
  } catch (const THAVException&) {
    const auto quoted = WithQuotes(*target, settings.path);
    throw THostError(
        "no object path: '" + settings.path + "' (" +
        (quoted.empty() ? "a path looks like Class.Key=\"text\",OtherKey=1" : QuotesHint(quoted)) +
        ")");
  }
}

// A text of digits without its quotes is a path, of a number.
std::string HintOfMissing(const boost::shared_ptr<ICIMNamespace>& target, const std::string& path) {
  const auto quoted = WithQuotes(*target, path);
  const bool isThere =
      !quoted.empty() &&
      target->GetInstance(TCIMReference::Parse(PathOfPrintable(quoted), target), {});
  return isThere ? " (" + QuotesHint(quoted) + ")" : "";
}

}  // namespace

boost::shared_ptr<ICIMClass> FindClass(ICIMNamespace& target, const std::string& name) {
  try {
    return target.GetClass(name, {});
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() == kHAVNotFound) throw THostError("no such class: '" + name + "'");
    if (failure.GetStatusCode() == kHAVInvalidName)
      throw THostError("no class name: '" + name + "'");
    throw;
  }
}

void RequireClass(ICIMNamespace& target, const std::string& name) {
  if (!name.empty()) FindClass(target, name);
}

bool IsClassName(const std::string& text) { return text.find('=') == std::string::npos; }

boost::shared_ptr<ICIMInstance> FindInstance(const boost::shared_ptr<ICIMNamespace>& target,
                                             const TSettings& settings) {
  const auto path = ParsePath(target, settings);
  const auto cls = FindClass(*target, path.GetClassName());
  auto instance = target->GetInstance(path, {});
  if (!instance)
    throw THostError(IsClassName(settings.path)
                         ? "'" + settings.path + "' names a class, and no instance"
                         : "no such instance: '" + settings.path + "'" +
                               HintOfMissing(target, settings.path));
  return instance;
}

}  // namespace havhost
