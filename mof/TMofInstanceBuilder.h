// TMofInstanceBuilder: makes and stores the instances of syntax trees, after their classes.
//
// Instances may refer to each other in any direction, by alias or by path. Values that are
// no aliases are set first; then aliased keys, whatever they depend on first; then the other
// aliases. Associations are stored behind the instances that they refer to.
//
// Ownership: shares the namespace; files and schema must outlive it.
// Errors:    collected in the report. Nothing is stored once there is an error.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/client/FoldedName.h"
#include "havcore/havcore.h"
#include "mof/MofSyntax.h"
#include "mof/TMofReader.h"
#include "mof/TMofReport.h"
#include "mof/TMofSchemaBuilder.h"
#include "mof/TMofValueReader.h"

namespace hav::mof {

class TMofInstanceBuilder {
 public:
  using TProgress = TMofSchemaBuilder::TProgress;

  TMofInstanceBuilder(boost::shared_ptr<NORVHAV20::ICIMNamespace> home,
                      const TMofSchemaBuilder& schema, const TMofReader::TFiles& files,
                      bool complete, TMofReport& report);

  void Build(const TProgress& progress);

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // What the assignments to instances of one class ask about its properties.
  struct TSlot {
    NORVHAV20::ECIMType type;
    boost::shared_ptr<NORVHAV20::ICIMClass> referenced;  // empty: any
    bool isKey;
  };
  struct TShape {
    boost::shared_ptr<NORVHAV20::ICIMClass> cls;
    bool isDamaged;  // not all of its properties could be read
    std::vector<std::string> keys;
    std::unordered_map<std::string_view, TSlot, client::TFoldedHash, client::TFoldedEqual> slots;
  };
  struct TItem {
    const TMofFile* file;
    const TMofInstance* syntax;
    const TShape* shape;
    boost::shared_ptr<NORVHAV20::ICIMInstance> object;
    bool hasKeys = false;  // its path is known
  };
  // What an alias stands for: one of the two.
  struct TAlias {
    const TMofFile* file;
    TMofOffset offset;
    std::size_t item;
    const TMofSchemaBuilder::TClass* cls;
  };
  // Which items wait for which: an item is ready when nothing that it waits for is left.
  struct TWaiting {
    explicit TWaiting(std::size_t count) : waitsFor(count), awaitedBy(count) {}
    void Add(std::size_t item, std::size_t other);
    // Calls `visit` for every item that gets ready, and returns those that never do.
    template <class TVisit>
    std::vector<std::size_t> Run(const std::vector<std::size_t>& items, TVisit&& visit);

    std::vector<std::size_t> waitsFor;
    std::vector<std::vector<std::size_t>> awaitedBy;
  };

  void Collect();
  void AddAlias(const TMofFile& file, const TMofName& name, std::size_t item,
                const TMofSchemaBuilder::TClass* cls);
  const TShape* ShapeOf(const TMofFile& file, const TMofName& className);
  void Make(TItem& item);
  void SetAliasedKeys();
  void SetAliases(const TItem& item, bool keys);
  void SetReferenceDefaults();
  void Set(const TItem& item, const TMofAssignment& assignment, const TSlot& slot);
  std::optional<NORVHAV20::TCIMReference> Resolve(std::string_view alias) const;

  void Store(const TProgress& progress);
  void StoreOne(const TItem& item);
  bool HasAllKeys(const TItem& item);
  void ReportBadReference(const TItem& item, const NORVHAV20::THAVException& failure);
  void Fail(const TItem& item, TMofOffset offset, const std::string& text);

  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_home;
  const TMofSchemaBuilder& m_schema;
  const TMofReader::TFiles& m_files;
  bool m_complete;
  TMofReport& m_report;
  TMofValueReader m_values;

  client::TFoldedMap<TShape> m_shapes;
  client::TFoldedMap<TAlias> m_aliases;
  std::vector<TItem> m_items;
};

}  // namespace hav::mof
