// havhost inventory: every instance, hung up by the associations.
#include <cstring>

#include "havhost/CommandLine.h"
#include "havhost/Lookup.h"
#include "havhost/report/HtmlReport.h"
#include "havhost/report/InstanceText.h"
#include "havhost/report/Json.h"
#include "havhost/report/TInventoryTree.h"
#include "havhost/report/Text.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

// What the tree is drawn with.
struct TBranches {
  const char* line;
  const char* blank;
  const char* branch;
  const char* lastBranch;
};

TBranches BranchesOf(const TTextStyle& style) {
  return style.boxes ? TBranches{"│  ", "   ", "├─ ", "└─ "}
                     : TBranches{"|  ", "   ", "+- ", "`- "};
}

using TNodes = std::vector<TInventoryTree::TNode>;

// What stands left of the lines below a node, from the branches that go on beside them.
std::string Indentation(const TNodes& nodes, std::size_t at, const TBranches& with) {
  std::vector<const char*> pieces;
  for (; nodes[at].parent != TInventoryTree::kNone; at = nodes[at].parent)
    pieces.push_back(nodes[at].isLast ? with.blank : with.line);
  std::string indentation;
  for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) indentation += *piece;
  return indentation;
}

void PrintNode(std::ostream& out, const TNodes& nodes, std::size_t at, const TSettings& settings) {
  const auto& node = nodes[at];
  const bool hangs = node.parent != TInventoryTree::kNone;
  const auto& style = settings.style;
  const auto with = BranchesOf(style);
  const auto above = hangs ? Indentation(nodes, node.parent, with) : "";
  const auto below = Indentation(nodes, at, with) + (node.hasChildren ? with.line : with.blank);
  if (hangs)
    out << style.Ink(TTextStyle::kFaint, above + std::string(with.line, std::strlen(with.line) - 2))
        << '\n'
        << style.Ink(TTextStyle::kFaint, above + (node.isLast ? with.lastBranch : with.branch));
  else if (at != 0)
    out << '\n';
  out << style.Ink(TTextStyle::kStrong, node.instance.className) << "  "
      << Printable(node.instance.Title()) << '\n';
  PrintProperties(out, below, node.instance, settings);
}

TJson ToJson(const TNodes& nodes) {
  TJson instances = TJson::array();
  for (const auto& node : nodes) {
    auto instance = havhost::ToJson(node.instance);
    const bool hangs = node.parent != TInventoryTree::kNone;
    instance["parent"] = hangs ? TJson(nodes[node.parent].instance.path) : TJson();
    instance["association"] = hangs ? TJson(node.association) : TJson();
    instances.push_back(std::move(instance));
  }
  return instances;
}

void ShowInventory(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                   std::ostream& out) {
  const auto top = settings.className.empty() ? boost::shared_ptr<ICIMClass>()
                                              : FindClass(*target, settings.className);
  if (settings.IsHtml()) {
    out << HtmlReport(*target, settings.namespaceName, top);
    return;
  }
  const TInventoryTree tree(*target, top);
  if (settings.IsJson()) {
    TJson associations = TJson::array();
    for (const auto& association : tree.Associations())
      associations.push_back(havhost::ToJson(association));
    PrintJson(out, {{"namespace", settings.namespaceName},
                    {"instances", ToJson(tree.Nodes())},
                    {"associations", associations}});
    return;
  }
  for (std::size_t at = 0; at < tree.Nodes().size(); ++at)
    PrintNode(out, tree.Nodes(), at, settings);
}

}  // namespace

void AddInventoryCommand(CLI::App& program, TCommandLine& line) {
  auto& command = AddCommand(program, line,
                             {"inventory", "Show what this machine consists of, as a tree",
                              "havhost inventory --class ORVSG_DiskDrive"},
                             ShowInventory);
  command
      .add_option("--class", line.settings.className,
                  "Show only instances of this class or its subclasses, and what hangs on them")
      ->type_name("CLASS");
  AddFormatOption(command, line.settings, {"text", "json", "html"});
  AddPropertyOptions(command, line.settings);
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost
