// TMofInstanceBuilder: makes and stores the instances of files, after their classes.
//
// Instances go in as they are read, and nothing is kept of them but their places. What has to
// wait, because it refers to something that has not been read yet, is made as far as it can
// be and finished behind the last instance: aliased keys, whatever they depend on first; the
// other aliases; embedded objects; then associations, behind what they refer to.
//
// An instance that refers to an object that is not there, or to one of another namespace, is
// left out with a warning; strict loads take that for an error. An instance that has an alias
// and no keys, and whose alias is the value of a property that embeds it, is nothing but that
// value.
//
// Ownership: shares the namespace; files and schema must outlive it.
// Errors:    collected in the report; the namespace is not to be used then.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/client/FoldedName.h"
#include "havcore/havcore.h"
#include "mof/MofSyntax.h"
#include "mof/TMofEmbeddedText.h"
#include "mof/TMofPathFilter.h"
#include "mof/TMofReader.h"
#include "mof/TMofReport.h"
#include "mof/TMofSchemaBuilder.h"
#include "mof/TMofShapes.h"
#include "mof/TMofValueReader.h"

namespace hav::mof {

class TMofInstanceBuilder {
 public:
  using TProgress = TMofSchemaBuilder::TProgress;

  struct TSettings {
    std::string home;  // the name of the namespace; empty: not known
    bool strict = false;
    bool complete = true;  // the files hold all that was meant to be loaded
  };

  TMofInstanceBuilder(boost::shared_ptr<NORVHAV20::ICIMNamespace> home,
                      const TMofSchemaBuilder& schema, const TMofReader::TFiles& files,
                      TSettings settings, TMofReport& report);

  void Build(const TProgress& progress);

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // Of an instance: where its class name stands.
  struct TPlace {
    std::uint32_t file;  // index into m_files
    TMofOffset offset;
  };
  // An instance that is made and not stored yet.
  struct TItem {
    TPlace place;
    const TMofShape* shape;
    boost::shared_ptr<NORVHAV20::ICIMInstance> object;
    bool hasKeys = true;   // its path is known
    bool isWhole = true;   // all its values are set
    bool isValue = false;  // another instance embeds it
    bool isLost = false;   // something is wrong with it, or it is left out
  };
  // What an alias stands for: a class or an instance.
  struct TAlias {
    TPlace place;
    const TMofSchemaBuilder::TClass* cls = nullptr;
    boost::shared_ptr<NORVHAV20::ICIMInstance> object;  // once its path is known
    std::size_t item = kNone;                           // index into m_waiting
  };
  // Which items wait for which: an item is ready when nothing that it waits for is left.
  struct TDependencies {
    explicit TDependencies(std::size_t count) : waitsFor(count), awaitedBy(count) {}
    void Add(std::size_t item, std::size_t other);
    // Calls `visit` for every item that gets ready, and returns those that never do.
    template <class TVisit>
    std::vector<std::size_t> Run(const std::vector<std::size_t>& items, TVisit&& visit);

    std::vector<std::size_t> waitsFor;
    std::vector<std::vector<std::size_t>> awaitedBy;
  };
  // A reference that an instance holds, and the property that does.
  struct TLink {
    std::string property;
    NORVHAV20::TCIMReference target;
  };

  void AddClassAliases();
  TAlias* AddAlias(const TPlace& place, const TMofName& name);
  void ReadAll(const TProgress& progress);
  // The instance that m_syntax holds, at its place. Lets its text go unless it is needed again.
  void TakeOne(const TPlace& place, const TMofShape* shape);
  void MakeOne(const TPlace& place, const TMofShape* shape);
  // Adds a key's value to the hash of the path of the instance that is being made.
  void HashKey(const TMofSlot& slot, const NORVHAV20::TCIMValue& value);
  bool MayBeMade(const TMofShape* shape, const TPlace& place);
  void SetPlainValues(TItem& item);
  bool CanResolveAliases(const TItem& item) const;
  void SetAliases(TItem& item);
  bool LacksKeys(const TMofShape& shape) const;
  bool HasKey(const TMofKey& key) const;

  void Set(TItem& item, const TMofAssignment& assignment, const TMofSlot& slot);
  // False when the value is not to be set.
  bool IsSound(TItem& item, const TMofAssignment& assignment, const TMofSlot& slot,
               const NORVHAV20::TCIMValue& value);
  std::string WhatIsWrongWithTarget(TItem& item, const TMofAssignment& assignment,
                                    const TMofSlot& slot, const NORVHAV20::TCIMValue& value);
  std::string WhatIsWrongWithObjects(const TMofSlot& slot, const NORVHAV20::TCIMValue& value);
  std::optional<NORVHAV20::TCIMValue> Resolve(std::string_view alias, const TMofSlot& slot);
  std::optional<NORVHAV20::TCIMValue> TextOf(const TAlias& alias, const TMofSlot& slot);

  void FinishWaiting();
  // Calls `visit` with each assignment of m_syntax that has aliases, and its slot.
  template <class TVisit>
  void ForEachAliased(const TItem& item, TVisit&& visit) const {
    for (const auto& assignment : m_syntax.assignments) {
      const auto* slot = item.shape->Find(assignment.name.text);
      if (slot && slot->TakesAlias() && assignment.value.HasAlias()) visit(assignment, *slot);
    }
  }
  void SetWaitingKeys();
  void SetWaitingReferences();
  void SetWaitingObjects();
  void SetReferenceDefaults();
  void StoreWaiting();
  void StoreLinks(const std::vector<std::size_t>& items);
  TMofOffset PlaceOf(const TItem& item, const std::string& property);

  void Finish(TItem&& item);
  bool MayBeThere(const TItem& item);
  bool HasAllKeysGiven(const TItem& item);
  bool HasAllKeys(const TItem& item);
  static bool HasOwnPath(const TItem& item);
  void ReportMissingKey(const TItem& item, const std::string& name);
  static std::vector<TLink> LinksOf(NORVHAV20::ICIMInstance& object);
  bool IsElsewhere(const NORVHAV20::TCIMReference& target) const;
  bool IsThere(const NORVHAV20::TCIMReference& target) const;
  // Nothing when all that the instance refers to is there.
  std::optional<TLink> FirstLack(const TItem& item) const;
  void Store(const TItem& item, bool mayBeThere = true);
  void ReportTwice(const TItem& item, const std::string& path,
                   const NORVHAV20::ICIMInstance& before);
  void LeaveOut(TItem& item, TMofOffset offset, const TLink& lack);

  const TMofFile& FileOf(const TPlace& place) const { return *m_files[place.file]; }
  // Reads the instance there into m_syntax.
  bool ReadAt(const TPlace& place);
  TMofParser& ParserOf(const TPlace& place);
  void Fail(TItem& item, TMofOffset offset, const std::string& text);

  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_home;
  const TMofSchemaBuilder& m_schema;
  const TMofReader::TFiles& m_files;
  TSettings m_settings;
  TMofReport& m_report;
  TMofReport m_deaf{0};  // for what is read again
  TMofShapes m_shapes;
  TMofValueReader m_values;
  TMofEmbeddedText m_embedded;

  std::vector<std::unique_ptr<TMofParser>> m_parsers;  // of each file, once needed
  TMofInstance m_syntax;                               // what was read last
  std::size_t m_turn = 0;                          // the number of the instance that is being made
  std::vector<NORVHAV20::TCIMValue> m_references;  // of the instance that is being made
  std::deque<TItem> m_waiting;
  std::uint64_t m_pathHash = 0;  // of that instance
  client::TFoldedMap<TAlias> m_aliases;
  TMofPathFilter m_paths;  // of what is stored
  // Where each stored instance stands.
  std::deque<std::pair<const NORVHAV20::ICIMInstance*, TPlace>> m_stored;
};

}  // namespace hav::mof
