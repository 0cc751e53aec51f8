// XML read by XmlLite, the reader of Windows.
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>

#include <objidl.h>
#include <xmllite.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "havcore/client/Utf8.h"
#include "wbem/TXmlElement.h"

namespace hav::wbem {
namespace {

std::string Utf8(const wchar_t* text, UINT length) {
  std::string utf8;
  for (UINT at = 0; at < length; ++at) {
    char32_t point = text[at];
    const bool isPair = point >= 0xD800 && point < 0xDC00 && at + 1 < length;
    if (isPair) point = 0x10000 + ((point - 0xD800) << 10) + (char32_t{text[++at]} - 0xDC00);
    client::AppendUtf8(utf8, point);
  }
  return utf8;
}

// A document in memory, read once from the beginning to the end.
class TMemoryStream : public ISequentialStream {
 public:
  explicit TMemoryStream(std::string_view text) : m_text(text) {}
  virtual ~TMemoryStream() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    const bool known = wanted == IID_IUnknown || wanted == IID_ISequentialStream;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // It lives where it was made.
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG wanted, ULONG* got) override {
    const auto count = m_text.size() < wanted ? static_cast<ULONG>(m_text.size()) : wanted;
    std::memcpy(buffer, m_text.data(), count);
    m_text.remove_prefix(count);
    if (got) *got = count;
    return count == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }

 private:
  std::string_view m_text;
};

// The library is part of Windows; MinGW-w64 has its header and nothing to link with.
struct TXmlLite {
  using TCreateReader = HRESULT(STDAPICALLTYPE*)(REFIID, void**, IMalloc*);
  using TCreateInput = HRESULT(STDAPICALLTYPE*)(IUnknown*, IMalloc*, LPCWSTR, BOOL, LPCWSTR,
                                                IUnknown**);

  TXmlLite() {
    const auto library = LoadLibraryExW(L"xmllite.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!library) throw TXmlError("XmlLite, the system's reader of XML, is not there");
    createReader = Find<TCreateReader>(library, "CreateXmlReader");
    createInput = Find<TCreateInput>(library, "CreateXmlReaderInputWithEncodingName");
  }

  template <class T>
  static T Find(HMODULE library, const char* name) {
    const auto function = GetProcAddress(library, name);
    if (!function) throw TXmlError("XmlLite, the system's reader of XML, is too old");
    return reinterpret_cast<T>(reinterpret_cast<void*>(function));
  }

  TCreateReader createReader;
  TCreateInput createInput;
};

const TXmlLite& XmlLite() {
  static const TXmlLite library;
  return library;
}

struct TRelease {
  void operator()(IUnknown* object) const { object->Release(); }
};

class TReader {
 public:
  TReader(TMemoryStream& stream, const std::string& encoding) {
    void* reader = nullptr;
    Require(XmlLite().createReader(__uuidof(IXmlReader), &reader, nullptr));
    m_reader.reset(static_cast<IXmlReader*>(reader));
    Require(m_reader->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit));
    if (encoding.empty()) {
      Require(m_reader->SetInput(&stream));
      return;
    }
    IUnknown* input = nullptr;
    Require(XmlLite().createInput(&stream, nullptr, L"UTF-8", FALSE, nullptr, &input));
    m_input.reset(input);
    Require(m_reader->SetInput(input));
  }

  TXmlElement Read() {
    XmlNodeType type{};
    HRESULT result = S_OK;
    while ((result = m_reader->Read(&type)) == S_OK) Take(type);
    Require(result);
    if (!m_hasRoot || m_depth != 0) Fail("no element found");
    return m_builder.Take();
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const {
    UINT line = 0;
    if (m_reader) m_reader->GetLineNumber(&line);
    throw TXmlError("line " + std::to_string(line) + ": " + what);
  }

  void Require(HRESULT result) const {
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(result)) Fail("not well-formed");
  }

  void Take(XmlNodeType type) {
    switch (type) {
      case XmlNodeType_Element: return Open();
      case XmlNodeType_EndElement: return Close();
      case XmlNodeType_Text:
      case XmlNodeType_CDATA:
      case XmlNodeType_Whitespace: return Text();
      default: return;
    }
  }

  void Open() {
    const bool isEmpty = m_reader->IsEmptyElement() != FALSE;
    m_hasRoot = true;
    try {
      auto& element = m_builder.Open(Name());
      for (auto more = m_reader->MoveToFirstAttribute(); more == S_OK;
           more = m_reader->MoveToNextAttribute())
        element.attributes.emplace_back(Name(), Value());
    } catch (const TXmlError& failure) {
      Fail(failure.what());
    }
    ++m_depth;
    if (isEmpty) Close();
  }

  void Close() {
    m_builder.Close();
    --m_depth;
  }

  void Text() { m_builder.Text(Value()); }

  std::string Name() const {
    const wchar_t* text = nullptr;
    UINT length = 0;
    Require(m_reader->GetQualifiedName(&text, &length));
    return Utf8(text, length);
  }
  std::string Value() const {
    const wchar_t* text = nullptr;
    UINT length = 0;
    Require(m_reader->GetValue(&text, &length));
    return Utf8(text, length);
  }

  std::unique_ptr<IUnknown, TRelease> m_input;
  std::unique_ptr<IXmlReader, TRelease> m_reader;
  TXmlTreeBuilder m_builder;
  std::size_t m_depth = 0;
  bool m_hasRoot = false;
};

// Not every reader of that interface minds when the document ends before its elements do.
void RequireEnd(std::string_view document, const TXmlElement& root) {
  if (root.children.empty()) return;
  const auto end = document.rfind("</" + root.name);
  if (end != document.npos && document.find('>', end) != document.npos) return;
  const auto lines = std::count(document.begin(), document.end(), '\n') + 1;
  throw TXmlError("line " + std::to_string(lines) + ": no element found");
}

}  // namespace

TXmlElement TXmlElement::Parse(std::string_view document, const std::string& encoding) {
  TMemoryStream stream(document);
  TXmlElement root = TReader(stream, encoding).Read();
  RequireEnd(document, root);
  return root;
}

}  // namespace hav::wbem
