// TMofLoader: loads MOF files, and everything that they include, into a fresh namespace of
// a provider.
//
// A load is all or nothing: the namespace is handed over when it holds everything, and not
// at all when anything is wrong.
//
// Ownership: provider and source must outlive the loader; the namespace belongs to the
//            caller.
// Threads:   one thread at a time.
// Errors:    collected in the report. What the progress callback throws passes through.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMNamespace.h"
#include "havcore/INamespaceProvider.h"
#include "mof/IMofSource.h"
#include "mof/TMofReport.h"

namespace hav::mof {

struct TMofFile;

class TMofLoader {
 public:
  // The steps of a load, in their order.
  enum class EStep { kReadFiles, kMakeClasses, kStoreInstances };
  // How far the step is. While files are read, their number grows with what they include.
  using TProgress = std::function<void(EStep step, std::size_t done, std::size_t total)>;

  TMofLoader(const NORVHAV20::INamespaceProvider& provider, IMofSource& source)
      : m_provider(provider), m_source(source) {}

  // The name of the namespace; without one, a namespace pragma says it.
  void SetNamespaceName(std::string name) { m_name = std::move(name); }
  // The name where neither the caller nor a pragma gives one.
  void SetDefaultNamespaceName(std::string name) { m_defaultName = std::move(name); }
  // Whether an instance that refers to an object that is not there is an error, and not left
  // out with a warning.
  void SetStrict(bool strict) { m_strict = strict; }
  // Whether the report also tells, as warnings, what the namespace makes of declarations without
  // a word: TMofSchemaChecks lists it.
  void SetChecks(bool checks) { m_checks = checks; }
  // How much text, in bytes, goes at once when its instances are made; for tests, which have less
  // of it than the default.
  void SetPieceSize(TMofOffset bytes) noexcept { m_pieceSize = bytes; }
  // Whether the last load could read every text to its end.
  bool WasReadWhole() const noexcept { return m_wasReadWhole; }
  // The name that the last load settled on, empty when nobody gave one.
  const std::string& GetNamespaceName() const noexcept { return m_chosenName; }
  void SetProgress(TProgress progress) { m_progress = std::move(progress); }

  // Returns the namespace with everything in it, or an empty pointer when the report has
  // errors.
  boost::shared_ptr<NORVHAV20::ICIMNamespace> Load(const std::vector<std::string>& names,
                                                   TMofReport& report);

 private:
  std::function<void(std::size_t, std::size_t)> ProgressOf(EStep step) const;
  std::string ChooseName(const std::vector<std::unique_ptr<TMofFile>>& files,
                         TMofReport& report) const;

  const NORVHAV20::INamespaceProvider& m_provider;
  IMofSource& m_source;
  std::string m_name;
  std::string m_defaultName;
  std::string m_chosenName;
  bool m_strict = false;
  bool m_checks = false;
  TMofOffset m_pieceSize = TMofText::kPieceSize;
  bool m_wasReadWhole = false;
  TProgress m_progress;
};

}  // namespace hav::mof
