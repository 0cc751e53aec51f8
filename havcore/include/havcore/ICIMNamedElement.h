// ICIMNamedElement: an element that carries qualifiers: a class, or the declaration of a
// property, method or parameter. Qualifier names ignore case.
//
// Ownership: the element shares its qualifiers; what is returned is shared too.
// Errors:    THAVException; 25 for a name that is no CIM name.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMQualifierDecl.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMQualifier;

class HAV_TYPE ICIMNamedElement {
 public:
  virtual ~ICIMNamedElement() = default;  // 0

  // Attaches `qualifier`. Throws 28 when it conflicts with the one that stands there.
  virtual void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TOptions options) = 0;  // 1

  // Makes a qualifier of `decl` owned by this element, attaches and returns it; with the
  // given flavor (2) or the declaration's own (3). Throws as AddQualifier does.
#if HAV_OVERLOADS_REVERSED
  virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(
      boost::shared_ptr<ICIMQualifierDecl> decl, const TCIMValue& value,
      TOptions options) = 0;  // 3
  virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(
      boost::shared_ptr<ICIMQualifierDecl> decl, const TCIMValue& value,
      ICIMQualifierDecl::EFlavor flavor, TOptions options) = 0;  // 2
#else
  virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(
      boost::shared_ptr<ICIMQualifierDecl> decl, const TCIMValue& value,
      ICIMQualifierDecl::EFlavor flavor, TOptions options) = 0;  // 2
  virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(
      boost::shared_ptr<ICIMQualifierDecl> decl, const TCIMValue& value,
      TOptions options) = 0;  // 3
#endif

  // Returns the qualifier, empty with `found` false when there is none. Methods and
  // parameters do not offer it: 1.
  virtual boost::shared_ptr<ICIMQualifier> FindQualifier(const std::string& name, bool& found,
                                                         TOptions options) = 0;  // 4
  // Returns the qualifier. Absent: 15 from declarations, an empty pointer from a class.
  virtual boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name,
                                                        TOptions options) = 0;  // 5
  // Visits the qualifiers in the order of their case-folded names.
  virtual void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>& callback,
                                   TOptions options) = 0;  // 6
};

}  // namespace NORVHAV20
