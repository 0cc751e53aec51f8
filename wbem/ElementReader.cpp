#include "wbem/ElementReader.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "havcore/client/FoldedName.h"
#include "wbem/TCimError.h"
#include "wbem/ValueText.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

[[noreturn]] void Refuse(const std::string& what) {
  throw TCimError(ECimStatus::kInvalidParameter, what);
}

bool IsCimName(const std::string& name) {
  const auto isLetter = [](char c) {
    return c == '_' || (FoldCharacter(c) >= 'a' && FoldCharacter(c) <= 'z');
  };
  const auto isLetterOrDigit = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
  return !name.empty() && isLetter(name[0]) &&
         std::all_of(name.begin(), name.end(), isLetterOrDigit);
}

// A path to a class that may not be there.
TCIMReference ReadClassPath(const std::string& name, const TNamespacePtr& home) {
  if (!IsCimName(name)) Refuse("'" + name + "' is no class name");
  return TCIMReference::Parse(name, home);
}

// The declared type of a key, nothing when the class does not tell.
std::optional<ECIMType> KeyType(const boost::shared_ptr<ICIMClass>& cls, const std::string& name) {
  if (!cls) return {};
  try {
    return cls->GetPropertyDecl(name, {})->GetType({});
  } catch (const THAVException&) {
    return {};
  }
}

TCIMReference ParseReference(const std::string& text, const TNamespacePtr& home) {
  try {
    return TCIMReference::Parse(text, home);
  } catch (const THAVException&) {
    throw TCimError(ECimStatus::kTypeMismatch, "'" + text + "' is no object path");
  }
}

TCIMValue UntypedKey(const TXmlElement& value) {
  const auto kind = value.Get("VALUETYPE", "string");
  if (kind == "boolean") return ParseValue(kCIMBoolean, value.text);
  if (kind != "numeric") return TCIMValue(value.text);
  for (const auto type : {kCIMUInt64, kCIMSInt64}) {
    try {
      return ParseValue(type, value.text);
    } catch (const TCimError&) {
    }
  }
  return ParseValue(kCIMReal64, value.text);
}

TCIMValue ReadKey(const TXmlElement& value, std::optional<ECIMType> type,
                  const TNamespacePtr& home) {
  if (value.Is("VALUE.REFERENCE")) return TCIMValue(ReadReference(value, home));
  if (!value.Is("KEYVALUE")) Refuse("a key is a KEYVALUE or a VALUE.REFERENCE, not " + value.name);
  // Some clients write references as text.
  if (type == kCIMReference) return TCIMValue(ParseReference(value.text, home));
  return type && ElementOf(*type) == *type ? ParseValue(*type, value.text) : UntypedKey(value);
}

// The name of the only key, for paths that do not give it.
std::string OnlyKey(const boost::shared_ptr<ICIMClass>& cls) {
  std::vector<std::string> names;
  if (cls)
    cls->EnumerateKeyNames(
        [&](const std::string* name) {
          if (name) names.push_back(*name);
          return true;
        },
        {});
  if (names.size() != 1) Refuse("the path gives a key value without its name");
  return names[0];
}

TCIMValue ReadScalar(const TXmlElement& element, ECIMType type, const TNamespacePtr& home) {
  if (element.Is("VALUE.NULL")) return TCIMValue::Null(type);
  if (type == kCIMReference) {
    if (!element.Is("VALUE.REFERENCE")) Refuse("VALUE.REFERENCE is expected, not " + element.name);
    return TCIMValue(ReadReference(element, home));
  }
  if (!element.Is("VALUE")) Refuse("VALUE is expected, not " + element.name);
  return ParseValue(type, element.text);
}

TCIMValue ReadArray(const TXmlElement& element, ECIMType type, const TNamespacePtr& home) {
  std::vector<TCIMValue> values;
  for (const auto& child : element.children) values.push_back(ReadScalar(child, type, home));
  return TCIMValue(type, std::move(values));
}

bool IsValue(const TXmlElement& element) { return element.name.rfind("VALUE", 0) == 0; }

}  // namespace

std::string ReadNamespaceName(const TXmlElement& path) {
  std::string name;
  for (const auto& part : path.children) {
    if (!part.Is("NAMESPACE")) Refuse("NAMESPACE is expected, not " + part.name);
    if (!name.empty()) name += '/';
    name += Required(part, "NAME");
  }
  return name;
}

const TXmlElement& OnlyChild(const TXmlElement& element) {
  if (element.children.size() != 1)
    Refuse(element.name + " has " + std::to_string(element.children.size()) +
           " elements in it, not one");
  return element.children[0];
}

const std::string& Required(const TXmlElement& element, std::string_view attribute) {
  const auto* const value = element.Find(attribute);
  if (!value) Refuse(element.name + " has no " + std::string(attribute));
  return *value;
}

boost::shared_ptr<ICIMClass> FindClass(ICIMNamespace& home, const std::string& name) {
  try {
    auto cls = home.GetClass(name, {});
    const bool isThere = cls && cls->GetSuperClass({}) && !cls->IsHostMarked({});
    return isThere ? cls : boost::shared_ptr<ICIMClass>();
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound && failure.GetStatusCode() != kHAVInvalidName)
      throw;
    return {};
  }
}

TCIMReference ReadInstanceName(const TXmlElement& element, const TNamespacePtr& home) {
  if (!element.Is("INSTANCENAME")) Refuse("INSTANCENAME is expected, not " + element.name);
  const auto& className = Required(element, "CLASSNAME");
  TCIMReference path(home, {});
  const auto cls = FindClass(*home, className);
  if (cls)
    path.SetClass(cls);
  else
    path = ReadClassPath(className, home);
  for (const auto& child : element.children) {
    const bool named = child.Is("KEYBINDING");
    const auto name = named ? Required(child, "NAME") : OnlyKey(cls);
    path.AddKeyValue(name, ReadKey(named ? OnlyChild(child) : child, KeyType(cls, name), home));
  }
  return path;
}

TCIMReference ReadReference(const TXmlElement& element, const TNamespacePtr& home) {
  const auto* object = element.Is("VALUE.REFERENCE") ? &OnlyChild(element) : &element;
  std::string namespaceName;
  for (const auto& child : object->children) {
    const auto* const local = child.Is("NAMESPACEPATH")        ? child.Child("LOCALNAMESPACEPATH")
                              : child.Is("LOCALNAMESPACEPATH") ? &child
                                                               : nullptr;
    if (local) namespaceName = ReadNamespaceName(*local);
  }
  if (object->Is("INSTANCEPATH") || object->Is("LOCALINSTANCEPATH"))
    object = object->Child("INSTANCENAME");
  else if (object->Is("CLASSPATH") || object->Is("LOCALCLASSPATH"))
    object = object->Child("CLASSNAME");
  if (!object) Refuse("a path names no object");
  if (!object->Is("CLASSNAME")) {
    auto path = ReadInstanceName(*object, home);
    path.SetNameSpaceName(namespaceName);
    return path;
  }
  auto path = ReadClassPath(Required(*object, "NAME"), home);
  path.SetNameSpaceName(namespaceName);
  return path;
}

TCIMValue ReadValue(const TXmlElement& element, ECIMType type, const TNamespacePtr& home) {
  const TXmlElement* value = nullptr;
  for (const auto& child : element.children) {
    if (!IsValue(child)) continue;
    if (value) Refuse(element.name + " has more than one value");
    value = &child;
  }
  if (!value || value->Is("VALUE.NULL")) return TCIMValue::Null(type);
  if (ElementOf(type) == type) return ReadScalar(*value, type, home);
  if (!value->Is("VALUE.ARRAY") && !value->Is("VALUE.REFARRAY"))
    throw TCimError(ECimStatus::kTypeMismatch, "an array is expected, not " + value->name);
  return ReadArray(*value, ElementOf(type), home);
}

ECIMType ReadType(const TXmlElement& element) {
  const auto& name = element.name;
  const auto endsWith = [&](std::string_view end) {
    return name.size() > end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
  };
  if (endsWith(".REFERENCE")) return kCIMReference;
  if (endsWith(".REFARRAY")) return ArrayOf(kCIMReference);
  const auto& typeName = Required(element, "TYPE");
  const auto type = FindType(typeName);
  if (!type) Refuse("'" + typeName + "' is no CIM type");
  const bool array =
      endsWith(".ARRAY") || ReadFlag(element, "ISARRAY", element.Child("VALUE.ARRAY") != nullptr);
  return array ? ArrayOf(*type) : *type;
}

bool ReadFlag(const TXmlElement& element, std::string_view attribute, bool otherwise) {
  const auto* const value = element.Find(attribute);
  return value ? ParseBoolean(*value) : otherwise;
}

}  // namespace hav::wbem
