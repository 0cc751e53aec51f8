#include "mof/TMofParser.h"

#include <array>
#include <charconv>

#include "havcore/ICIMQualifierDecl.h"
#include "havcore/client/FoldedName.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;
using EKind = TMofToken::EKind;

namespace {

constexpr std::array<std::pair<std::string_view, ECIMType>, 14> kTypes{{
    {"boolean", kCIMBoolean},
    {"uint8", kCIMUInt8},
    {"sint8", kCIMSInt8},
    {"uint16", kCIMUInt16},
    {"sint16", kCIMSInt16},
    {"uint32", kCIMUInt32},
    {"sint32", kCIMSInt32},
    {"uint64", kCIMUInt64},
    {"sint64", kCIMSInt64},
    {"real32", kCIMReal32},
    {"real64", kCIMReal64},
    {"char16", kCIMChar16},
    {"string", kCIMString},
    {"datetime", kCIMDateTime},
}};

// Two names of older schemas say nothing that a namespace keeps.
constexpr std::array<std::pair<std::string_view, std::uint32_t>, 10> kScopes{{
    {"class", ICIMQualifierDecl::kScopeClass},
    {"association", ICIMQualifierDecl::kScopeAssociation},
    {"indication", ICIMQualifierDecl::kScopeIndication},
    {"property", ICIMQualifierDecl::kScopeProperty},
    {"reference", ICIMQualifierDecl::kScopeReference},
    {"method", ICIMQualifierDecl::kScopeMethod},
    {"parameter", ICIMQualifierDecl::kScopeParameter},
    {"any", ICIMQualifierDecl::kScopeAny},
    {"schema", ICIMQualifierDecl::kScopeNone},
    {"qualifier", ICIMQualifierDecl::kScopeNone},
}};

constexpr std::array<std::pair<std::string_view, TMofFlavor>, 6> kFlavors{{
    {"enableoverride", {ICIMQualifierDecl::kFlavorOverridable, 0}},
    {"disableoverride", {0, ICIMQualifierDecl::kFlavorOverridable}},
    {"tosubclass", {ICIMQualifierDecl::kFlavorToSubclass, 0}},
    {"restricted", {0, ICIMQualifierDecl::kFlavorToSubclass}},
    {"toinstance", {ICIMQualifierDecl::kFlavorToInstance, 0}},
    {"translatable", {ICIMQualifierDecl::kFlavorTranslatable, 0}},
}};

template <class T, std::size_t n>
const T* Find(const std::array<std::pair<std::string_view, T>, n>& table, const TMofToken& token) {
  if (token.kind != EKind::kName) return nullptr;
  for (const auto& [name, value] : table)
    if (SameName(name, token.text)) return &value;
  return nullptr;
}

}  // namespace

// What every token goes through comes first, for the compiler to put it together.
inline void TMofParser::Advance() {
  m_token = m_next;
  m_next = m_lexer.Next();
}

inline bool TMofParser::Take(char punctuation) {
  if (!m_token.Is(punctuation)) return false;
  Advance();
  return true;
}

inline void TMofParser::Expect(char punctuation, const char* where) {
  if (!Take(punctuation)) FailExpecting(punctuation, where);
}

inline bool TMofParser::IsKeyword(const TMofToken& token, std::string_view keyword) const noexcept {
  return token.kind == EKind::kName && SameName(token.text, keyword);
}

TMofParser::TMofParser(TMofFile& file, TMofReport& report, EInstances instances)
    : m_file(file),
      m_report(report),
      m_lexer(file.text, report),
      m_isQuick(instances == EInstances::kQuick),
      m_plain(file.text.PartAt(0)) {
  Advance();
  Advance();
}

void TMofParser::Parse(TMofFile& file, TMofReport& report, EInstances instances) {
  TMofParser parser(file, report, instances);
  while (parser.ReadOn()) {
  }
}

bool TMofParser::ReadOn() {
  m_atInclude = false;
  while (m_token.kind != EKind::kEnd) {
    try {
      if (!ReadPlainInstances()) ParseDeclaration();
      if (m_atInclude) return true;
    } catch (const TSyntaxError&) {
      m_file.isDamaged = true;
      SkipToDeclaration();
    }
  }
  if (m_lexer.IsCut()) m_file.isDamaged = true;
  return false;
}

bool TMofParser::ReadInstance(TMofOffset place, TMofInstance& instance) {
  return BeginInstance(place, instance) && EndInstance(instance);
}

bool TMofParser::BeginInstance(TMofOffset place, TMofInstance& instance) {
  m_plain = TMofPlainReader(m_file.text.PartAt(place));
  m_plain.MoveTo(place);
  m_isPlain = m_isQuick && m_plain.ReadClassName(instance);
  return m_isPlain || BeginByTokens(place, instance);
}

bool TMofParser::BeginByTokens(TMofOffset place, TMofInstance& instance) {
  GoOnAt(place);
  try {
    ParseInstanceHead(instance);
    return true;
  } catch (const TSyntaxError&) {
    return false;
  }
}

bool TMofParser::EndInstance(TMofInstance& instance) {
  if (m_isPlain && m_plain.ReadBody(&instance)) return true;
  if (m_isPlain && !BeginByTokens(instance.className.offset, instance)) return false;
  try {
    ParseInstanceBody(instance);
    return true;
  } catch (const TSyntaxError&) {
    return false;
  }
}

// The instance that begins with m_token and those that follow it, as long as they are plain.
bool TMofParser::ReadPlainInstances() {
  if (!m_isQuick || !IsKeyword(m_token, "instance") || m_report.IsFull()) return false;
  const auto begin = m_token.offset;
  auto next = begin;
  m_plain.MoveTo(begin);
  while (m_plain.ReadKeywords()) {
    const auto place = m_plain.GetOffset();
    if (!m_plain.ReadClassName(m_instance) || !m_plain.ReadBody(nullptr)) break;
    NoteCut(next, true);
    m_file.instances.push_back(place);
    next = m_plain.GetOffset();
  }
  if (next == begin) return false;
  GoOnAt(next);
  return true;
}

void TMofParser::GoOnAt(TMofOffset offset) {
  m_lexer.MoveTo(offset);
  Advance();
  Advance();
}

void TMofParser::ParseDeclaration() {
  NoteCut(m_token.offset, IsKeyword(m_token, "instance"));
  if (m_token.kind == EKind::kPragma) return ParsePragma();
  if (IsKeyword(m_token, "qualifier")) return ParseQualifierDecl();
  auto qualifiers = ParseQualifiers();
  if (IsKeyword(m_token, "class")) return ParseClass(std::move(qualifiers));
  if (!IsKeyword(m_token, "instance"))
    FailExpecting(qualifiers.empty() ? "a declaration" : "'class' or 'instance' after qualifiers");
  const auto begin = m_token.offset;
  Advance();
  if (!TakeKeyword("of")) FailExpecting("'of' after 'instance'");
  ParseInstanceHead(m_instance);
  ParseInstanceBody(m_instance);
  if (!qualifiers.empty())
    m_report.AddWarning(m_file.text, begin, "the qualifiers of an instance are not kept");
  m_file.instances.push_back(m_instance.className.offset);
}

// Where instances follow something else, what is cut off may be smaller: it stays in memory.
void TMofParser::NoteCut(TMofOffset begin, bool isInstance) {
  const auto usual = m_file.pieceSize;
  const bool changes = std::exchange(m_wasInstance, isInstance) != isInstance;
  const auto last = m_file.cuts.empty() ? 0 : m_file.cuts.back();
  if (begin - last > (changes ? usual / 16 : usual)) m_file.cuts.push_back(begin);
}

void TMofParser::ParsePragma() {
  Advance();
  const auto name = ParseName("the name of a pragma");
  const bool include = SameName(name.text, "include");
  const bool home = SameName(name.text, "namespace");
  if (!include && !home && !SameName(name.text, "locale") && !SameName(name.text, "instancelocale"))
    return SkipPragma(name);
  Expect('(', "after the name of a pragma");
  const auto value = m_token;
  if (value.kind != EKind::kString && value.kind != EKind::kBroken)
    FailExpecting("a string in a pragma");
  Advance();
  Expect(')', "after the string of a pragma");
  if (value.kind == EKind::kBroken) throw TSyntaxError();
  if (include)
    m_file.pragmas.push_back(
        {TMofPragma::EKind::kInclude, TMofLexer::FileName(value.text), value.offset});
  else if (home)
    m_file.pragmas.push_back(
        {TMofPragma::EKind::kNamespace, TMofLexer::StringValue(value.text), value.offset});
  m_atInclude = include;
}

// Other readers of the language have pragmas of their own, with any number of parameters.
void TMofParser::SkipPragma(const TMofName& name) {
  m_report.AddWarning(m_file.text, name.offset,
                      "pragma '" + std::string(name.text) + "' is not known and has no effect");
  if (!Take('(')) return;
  while (!Take(')')) {
    if (m_token.kind == EKind::kEnd || m_token.kind == EKind::kPragma ||
        (m_token.kind == EKind::kPunctuation && !m_token.Is(',')))
      FailExpecting("')' after the parameters of a pragma");
    Advance();
  }
}

void TMofParser::ParseQualifierDecl() {
  Advance();
  TMofQualifierDecl decl;
  decl.name = ParseName("the name of a qualifier");
  Expect(':', "after the name of a qualifier");
  decl.type = ParseType("a data type after ':'");
  if (decl.type.element == kCIMReference)
    m_report.AddError(m_file.text, decl.type.referenced.offset,
                      "a qualifier cannot be a reference");
  ParseArray(decl.type);
  if (Take('=')) decl.defaultValue = ParseValue();
  Expect(',', "and a scope in qualifier declaration");
  ParseScope(decl);
  if (Take(',')) {
    if (!TakeKeyword("flavor")) FailExpecting("'Flavor' after ','");
    Expect('(', "after 'Flavor'");
    do {
      if (!ParseFlavor(decl.flavor)) FailExpecting("a flavor");
    } while (Take(','));
    Expect(')', "after flavors");
  }
  Expect(';', "after qualifier declaration");
  m_file.qualifierDecls.push_back(std::move(decl));
}

void TMofParser::ParseScope(TMofQualifierDecl& decl) {
  if (!TakeKeyword("scope")) FailExpecting("'Scope' after ','");
  Expect('(', "after 'Scope'");
  if (Take(')')) return;  // a qualifier that may stand nowhere
  do {
    const auto* scope = Find(kScopes, m_token);
    if (!scope) FailExpecting("a kind of element in a scope");
    decl.scope |= *scope;
    Advance();
  } while (Take(','));
  Expect(')', "after a scope");
}

void TMofParser::ParseClass(TMofQualifiers&& qualifiers) {
  Advance();
  TMofClass cls;
  cls.qualifiers = std::move(qualifiers);
  cls.name = ParseName("the name of a class");
  cls.alias = ParseAlias();
  if (Take(':')) cls.superclass = ParseName("the name of a superclass");
  if (!Take('{')) FailExpecting("'{' to begin class '" + std::string(cls.name.text) + "'");
  // From here on the class is kept whatever is wrong in it, so that its name is known.
  cls.isDamaged = !ParseBody("class", cls.name, [&] { ParseMember(cls); });
  m_file.classes.push_back(std::move(cls));
}

template <class ParseOne>
bool TMofParser::ParseBody(const char* kind, const TMofName& name, ParseOne&& parseOne) {
  const auto what = [&] { return kind + (" '" + std::string(name.text) + "'"); };
  bool sound = true;
  while (!m_token.Is('}')) {
    try {
      if (m_token.kind == EKind::kEnd || AtDeclaration()) FailExpecting("'}' to end " + what());
      parseOne();
    } catch (const TSyntaxError&) {
      sound = false;
      if (!SkipToMember()) return false;
    }
  }
  Advance();
  try {
    if (!Take(';')) FailExpecting("';' after " + what());
  } catch (const TSyntaxError&) {
    sound = false;  // what follows is read as the next declaration
  }
  return sound;
}

void TMofParser::ParseMember(TMofClass& cls) {
  auto qualifiers = ParseQualifiers();
  auto type = ParseType("a property or method");
  const auto name = ParseName("the name of a property or method");
  if (Take('(')) {
    if (type.element == kCIMReference)
      m_report.AddError(m_file.text, type.referenced.offset, "a method cannot return a reference");
    TMofMethod method{name, type, std::move(qualifiers), {}};
    if (!m_token.Is(')')) {
      do {
        method.parameters.push_back(ParseParameter());
      } while (Take(','));
    }
    Expect(')', "after the parameters of a method");
    Expect(';', "after method declaration");
    cls.methods.push_back(std::move(method));
    return;
  }
  if (type.element == kCIMReference && m_token.Is('['))
    m_report.AddError(m_file.text, m_token.offset, "a property cannot be an array of references");
  ParseArray(type);
  TMofProperty property{name, type, std::move(qualifiers), {}};
  if (Take('=')) property.defaultValue = ParseValue();
  Expect(';', "after property declaration");
  cls.properties.push_back(std::move(property));
}

TMofParameter TMofParser::ParseParameter() {
  TMofParameter parameter;
  parameter.qualifiers = ParseQualifiers();
  parameter.type = ParseType("a parameter");
  parameter.name = ParseName("the name of a parameter");
  ParseArray(parameter.type);
  return parameter;
}

void TMofParser::ParseInstanceHead(TMofInstance& instance) {
  instance.className = ParseName("the name of a class");
  instance.alias = ParseAlias();
}

void TMofParser::ParseInstanceBody(TMofInstance& instance) {
  instance.assignments.clear();
  Expect('{', "to begin an instance");
  instance.isDamaged =
      !ParseBody("instance of", instance.className, [&] { ParseAssignment(instance); });
}

void TMofParser::ParseAssignment(TMofInstance& instance) {
  const auto begin = m_token.offset;
  if (m_token.Is('[') && !ParseQualifiers().empty())
    m_report.AddWarning(m_file.text, begin, "the qualifiers of an instance are not kept");
  const auto name = ParseName("the name of a property");
  Expect('=', "after the name of a property");
  auto value = ParseValue();
  Expect(';', "after the value of a property");
  instance.assignments.push_back({name, std::move(value)});
}

TMofQualifiers TMofParser::ParseQualifiers() {
  TMofQualifiers qualifiers;
  if (!Take('[')) return qualifiers;
  do {
    qualifiers.push_back(ParseQualifier());
  } while (Take(','));
  Expect(']', "after qualifiers");
  return qualifiers;
}

TMofQualifier TMofParser::ParseQualifier() {
  TMofQualifier qualifier;
  qualifier.name = ParseName("the name of a qualifier");
  if (m_token.Is('{')) {
    qualifier.value = ParseArrayValue();
  } else if (Take('(')) {
    qualifier.value = ParseValue();
    Expect(')', "after the value of a qualifier");
  }
  if (Take(':')) {
    if (!ParseFlavor(qualifier.flavor)) FailExpecting("a flavor after ':'");
    while (ParseFlavor(qualifier.flavor)) {
    }
  }
  return qualifier;
}

bool TMofParser::ParseFlavor(TMofFlavor& flavor) {
  const auto* said = Find(kFlavors, m_token);
  if (!said) return false;
  if ((said->set & flavor.cleared) != 0 || (said->cleared & flavor.set) != 0)
    m_report.AddError(m_file.text, m_token.offset,
                      "flavor " + m_token.Describe() + " contradicts one before it");
  flavor.set |= said->set;
  flavor.cleared |= said->cleared;
  Advance();
  return true;
}

TMofType TMofParser::ParseType(const char* what) {
  TMofType type;
  if (IsKeyword(m_next, "ref")) {
    type.element = kCIMReference;
    type.referenced = ParseName("the class of a reference");
    Advance();
    return type;
  }
  const auto* known = Find(kTypes, m_token);
  if (!known && m_token.kind == EKind::kName && (m_next.kind == EKind::kName || m_next.Is(','))) {
    const bool isVoid = SameName(m_token.text, "void");
    m_report.AddError(m_file.text, m_token.offset,
                      isVoid ? "no value is of type " + m_token.Describe() +
                                   "; a method returns one, uint32 where there is no other"
                             : "unknown type " + m_token.Describe());
    throw TSyntaxError();
  }
  if (!known) FailExpecting(what);
  type.element = *known;
  type.referenced.offset = m_token.offset;
  Advance();
  return type;
}

void TMofParser::ParseArray(TMofType& type) {
  if (!Take('[')) return;
  type.isArray = true;
  if (m_token.kind == EKind::kInteger) {
    const auto digits = m_token.text;
    const auto* end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, type.arraySize);
    if (failure != std::errc() || stop != end || type.arraySize == 0)
      m_report.AddError(m_file.text, m_token.offset,
                        "the size of an array is a decimal number from 1 to 4294967295, not " +
                            m_token.Describe());
    Advance();
  }
  Expect(']', "after '[' or the size of an array");
}

TMofValue TMofParser::ParseValue() {
  if (m_token.Is('{')) return ParseArrayValue();
  TMofValue value;
  value.offset = m_token.offset;
  value.scalar = ParseLiteral();
  return value;
}

TMofValue TMofParser::ParseArrayValue() {
  TMofValue value;
  value.offset = m_token.offset;
  value.isArray = true;
  Advance();
  if (Take('}')) return value;
  m_inArray = true;
  do {
    value.elements.push_back(ParseLiteral());
  } while (Take(','));
  Expect('}', "after the elements of an array");
  m_inArray = false;
  value.elements.shrink_to_fit();
  return value;
}

TMofToken TMofParser::ParseLiteral() {
  const auto literal = m_token;
  switch (literal.kind) {
    case EKind::kName:
      if (!SameName(literal.text, "true") && !SameName(literal.text, "false") &&
          !SameName(literal.text, "null"))
        FailExpecting("a value");
      break;
    case EKind::kAlias:
    case EKind::kInteger:
    case EKind::kReal:
    case EKind::kCharacter:
    case EKind::kString:
    case EKind::kBroken: break;
    default: FailExpecting("a value");
  }
  Advance();
  return literal;
}

TMofName TMofParser::ParseName(const char* what) {
  if (m_token.kind != EKind::kName) FailExpecting(what);
  const TMofName name{m_token.text, m_token.offset};
  Advance();
  return name;
}

TMofName TMofParser::ParseAlias() {
  if (!TakeKeyword("as")) return {};
  if (m_token.kind != EKind::kAlias) FailExpecting("an alias after 'as'");
  const TMofName alias{m_token.text, m_token.offset};
  Advance();
  return alias;
}

bool TMofParser::TakeKeyword(std::string_view keyword) {
  if (!IsKeyword(m_token, keyword)) return false;
  Advance();
  return true;
}

// No member of a class begins like this, so it is where reading goes on after an error.
bool TMofParser::AtDeclaration() const noexcept {
  if (m_token.kind == EKind::kPragma) return true;
  if (m_next.kind != EKind::kName || IsKeyword(m_next, "ref")) return false;
  return IsKeyword(m_token, "class") || IsKeyword(m_token, "qualifier") ||
         (IsKeyword(m_token, "instance") && IsKeyword(m_next, "of"));
}

void TMofParser::FailExpecting(char punctuation, const char* where) {
  FailExpecting(std::string("'") + punctuation + "' " + where);
}

void TMofParser::FailExpecting(const std::string& what) {
  m_report.AddError(m_file.text, m_token.offset,
                    "expected " + what + ", found " + m_token.Describe());
  throw TSyntaxError();
}

void TMofParser::SkipToDeclaration() {
  std::size_t depth = std::exchange(m_inArray, false) ? 1 : 0;
  while (m_token.kind != EKind::kEnd && !AtDeclaration()) {
    if (m_token.Is('{')) ++depth;
    if (m_token.Is('}') && depth > 0) --depth;
    const bool end = m_token.Is(';') && depth == 0;
    Advance();
    if (end) return;
  }
}

// False when the class ends without its '}'.
bool TMofParser::SkipToMember() {
  std::size_t depth = std::exchange(m_inArray, false) ? 1 : 0;
  while (m_token.kind != EKind::kEnd && !AtDeclaration()) {
    if (m_token.Is('}') && depth == 0) return true;
    if (m_token.Is('{')) ++depth;
    if (m_token.Is('}')) --depth;
    const bool end = m_token.Is(';') && depth == 0;
    Advance();
    if (end) return true;
  }
  return false;
}

}  // namespace hav::mof
