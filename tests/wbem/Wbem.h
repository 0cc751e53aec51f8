// Wbem: requests that stand in a test, and the answers of a repository that is made of MOF.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"
#include "wbem/Interop.h"
#include "wbem/TMessageHandler.h"

namespace havtest {

using hav::wbem::THttpReply;
using hav::wbem::THttpRequest;

inline constexpr char kZooModel[] = R"mof(
[Abstract, Description("All that lives.")] class Z_Animal {
  [Key] string Name;
  uint16 Legs = 4;
};
class Z_Bird : Z_Animal {
  [Override("Legs"), Description("Two.")] uint16 Legs = 2;
  boolean Flies;
  string Colours[];
  real64 Weight;
  datetime Hatched;
  char16 Ring;
  sint8 Depth;
  [Description("Makes it sing.")] uint32 Sing([In] string Song, uint8 Volumes[]);
};
class Z_Cage {
  [Key] uint32 Number;
  [Key] boolean Inside;
};
[Association] class Z_Lives {
  [Key] Z_Cage REF Cage;
  [Key] Z_Animal REF Animal;
};
instance of Z_Bird as $Ada { Name = "Ada"; Flies = true; Colours = {"red", "<blue>"}; Weight = 0.5;
  Hatched = "20240301101500.000000+060"; Ring = 'A'; Depth = -3; };
instance of Z_Bird as $Bob { Name = "Bob & \"Co\""; Legs = 1; };
instance of Z_Cage as $One { Number = 1; Inside = TRUE; };
instance of Z_Lives { Cage = $One; Animal = $Ada; };
instance of Z_Lives { Cage = $One; Animal = $Bob; };
)mof";

// A parameter of an operation.
inline std::string Parameter(const std::string& name, const std::string& value) {
  return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
}
inline std::string TextParameter(const std::string& name, const std::string& text) {
  return Parameter(name, "<VALUE>" + text + "</VALUE>");
}
inline std::string ClassParameter(const std::string& className,
                                  const std::string& name = "ClassName") {
  return Parameter(name, "<CLASSNAME NAME=\"" + className + "\"/>");
}
inline std::string BirdName(const std::string& name) {
  return "<INSTANCENAME CLASSNAME=\"Z_Bird\"><KEYBINDING NAME=\"Name\"><KEYVALUE>" + name +
         "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}
inline constexpr char kCageName[] =
    "<INSTANCENAME CLASSNAME=\"Z_Cage\"><KEYBINDING NAME=\"Number\"><KEYVALUE "
    "VALUETYPE=\"numeric\">1</KEYVALUE></KEYBINDING><KEYBINDING NAME=\"Inside\"><KEYVALUE "
    "VALUETYPE=\"boolean\">true</KEYVALUE></KEYBINDING></INSTANCENAME>";

inline constexpr char kNamespacePath[] =
    "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"zoo\"/></LOCALNAMESPACEPATH>";

inline std::string Message(const std::string& request) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
         "<MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\">" +
         request + "</MESSAGE></CIM>";
}
inline std::string Call(const std::string& operation, const std::string& parameters) {
  return Message("<SIMPLEREQ><IMETHODCALL NAME=\"" + operation + "\">" + kNamespacePath +
                 parameters + "</IMETHODCALL></SIMPLEREQ>");
}

inline THttpRequest Post(const std::string& operation, const std::string& body) {
  return {"POST",
          {{"Host", "zoo.example:5988"},
           {"Content-Type", "application/xml; charset=\"utf-8\""},
           {"CIMOperation", "MethodCall"},
           {"CIMProtocolVersion", "1.0"},
           {"CIMMethod", operation},
           {"CIMObject", "root%2Fzoo"}},
          body};
}

// The zoo, served.
class Zoo {
 public:
  explicit Zoo(bool writable = true, const std::string& mof = kZooModel)
      : loaded(LoadText(mof)), repository([this] { return now; }), handler(repository) {
    EXPECT_EQ(Lines{}, loaded.messages);
    repository.Add("root/zoo", loaded.ns, writable);
    // Loading sets up; only what the operations log counts.
    logger.Take();
  }

  THttpReply Handle(const THttpRequest& request) { return handler.Handle(request); }

  // The whole body.
  static std::string Text(THttpReply reply) {
    auto text = reply.body;
    while (reply.next) {
      const bool more = reply.next(reply.body);
      text += reply.body;
      if (!more) break;
    }
    return text;
  }

  // The answer to an operation: what stands in IMETHODRESPONSE.
  std::string Run(const std::string& operation, const std::string& parameters) {
    auto reply = Handle(Post(operation, Call(operation, parameters)));
    EXPECT_EQ(200u, reply.status) << reply.body;
    const auto text = Text(std::move(reply));
    const std::string before =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
        "<MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"" +
        operation + "\">";
    const std::string after = "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>\n";
    if (text.rfind(before, 0) != 0 || text.size() < before.size() + after.size()) return text;
    return text.substr(before.size(), text.size() - before.size() - after.size());
  }
  // The same without IRETURNVALUE, which has to be there.
  std::string Value(const std::string& operation, const std::string& parameters) {
    const auto text = Run(operation, parameters);
    const std::string before = "<IRETURNVALUE>";
    const std::string after = "</IRETURNVALUE>";
    if (text.rfind(before, 0) != 0 || text.size() < before.size() + after.size()) return text;
    return text.substr(before.size(), text.size() - before.size() - after.size());
  }

  RecordingLogger logger;
  Loaded loaded;
  std::chrono::steady_clock::time_point now{};
  hav::wbem::TRepository repository;
  hav::wbem::TMessageHandler handler;
};

inline std::string Error(unsigned code, const std::string& description) {
  return "<ERROR CODE=\"" + std::to_string(code) + "\" DESCRIPTION=\"" + description +
         "\"></ERROR>";
}

}  // namespace havtest
