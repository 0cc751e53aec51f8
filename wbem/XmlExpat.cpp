// XML read by Expat.
#include <memory>
#include <new>
#include <type_traits>

#include <expat.h>

#include "wbem/TXmlElement.h"

namespace hav::wbem {
namespace {

// Expat is C: nothing may be thrown through it, so what goes wrong is kept and the parser told
// to stop.
class TReader {
 public:
  explicit TReader(const std::string& encoding)
      : m_parser(XML_ParserCreate(encoding.empty() ? nullptr : encoding.c_str())) {
    if (!m_parser) throw std::bad_alloc();
    XML_SetUserData(m_parser.get(), this);
    XML_SetElementHandler(m_parser.get(), OnOpen, OnClose);
    XML_SetCharacterDataHandler(m_parser.get(), OnText);
    XML_SetEntityDeclHandler(m_parser.get(), OnEntityDecl);
    XML_SetSkippedEntityHandler(m_parser.get(), OnSkippedEntity);
  }

  TXmlElement Read(std::string_view document) {
    const auto status =
        XML_Parse(m_parser.get(), document.data(), static_cast<int>(document.size()), 1);
    if (m_outOfMemory) throw std::bad_alloc();
    if (status != XML_STATUS_OK)
      throw TXmlError(
          "line " + std::to_string(XML_GetCurrentLineNumber(m_parser.get())) + ": " +
          (m_failure.empty() ? XML_ErrorString(XML_GetErrorCode(m_parser.get())) : m_failure));
    return m_builder.Take();
  }

 private:
  template <class F>
  static void Guard(void* self, F&& work) noexcept {
    auto& reader = *static_cast<TReader*>(self);
    if (reader.m_outOfMemory || !reader.m_failure.empty()) return;
    try {
      work(reader);
      return;
    } catch (const TXmlError& failure) {
      reader.m_failure = failure.what();
    } catch (const std::bad_alloc&) {
      reader.m_outOfMemory = true;
    }
    XML_StopParser(reader.m_parser.get(), XML_FALSE);
  }

  static void XMLCALL OnOpen(void* self, const XML_Char* name, const XML_Char** attributes) {
    Guard(self, [&](TReader& reader) {
      auto& element = reader.m_builder.Open(name);
      for (; *attributes; attributes += 2)
        element.attributes.emplace_back(attributes[0], attributes[1]);
    });
  }
  static void XMLCALL OnClose(void* self, const XML_Char*) {
    Guard(self, [](TReader& reader) { reader.m_builder.Close(); });
  }
  static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
    Guard(self, [&](TReader& reader) {
      reader.m_builder.Text({text, static_cast<std::size_t>(length)});
    });
  }
  static void XMLCALL OnEntityDecl(void* self, const XML_Char*, int, const XML_Char*, int,
                                   const XML_Char*, const XML_Char*, const XML_Char*,
                                   const XML_Char*) {
    Guard(self, [](TReader&) { throw TXmlError("declarations of entities are refused"); });
  }
  static void XMLCALL OnSkippedEntity(void* self, const XML_Char*, int) {
    Guard(self, [](TReader&) { throw TXmlError("undefined entity"); });
  }

  struct TFree {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };
  std::unique_ptr<std::remove_pointer_t<XML_Parser>, TFree> m_parser;
  TXmlTreeBuilder m_builder;
  std::string m_failure;
  bool m_outOfMemory = false;
};

}  // namespace

TXmlElement TXmlElement::Parse(std::string_view document, const std::string& encoding) {
  return TReader(encoding).Read(document);
}

}  // namespace hav::wbem
