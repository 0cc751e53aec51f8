// ClassReport: what there is to tell of a class, taken out of it.
//
// Ownership: values, as in InstanceReport.
// Errors:    THAVException of the class.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "havcore/ICIMClass.h"
#include "havcore/TCIMValue.h"

namespace havhost {

struct TClassKind {
  bool isAssociation;
  bool isAbstract;
  bool isIndication;

  // "abstract association", "class".
  std::string ToString() const;
};

struct TQualifierReport {
  std::string name;
  NORVHAV20::TCIMValue value;
};

// A property or a method.
struct TDeclReport {
  std::string name;
  std::string type;    // as MOF writes it, "ORVSG_Processor REF" included
  std::string origin;  // the class that declares it
  std::vector<TQualifierReport> qualifiers;
};

struct TPropertyDeclReport : TDeclReport {
  bool isKey = false;
  NORVHAV20::TCIMValue defaultValue;
};

struct TParameterReport {
  std::string name;
  std::string type;
  std::vector<TQualifierReport> qualifiers;
};

struct TMethodDeclReport : TDeclReport {
  std::vector<TParameterReport> parameters;
};

struct TClassReport {
  std::string name;
  std::string superclass;               // empty for a top-level class
  std::vector<std::string> subclasses;  // direct ones
  TClassKind kind;
  std::size_t instances;  // its own
  std::vector<TQualifierReport> qualifiers;
  std::vector<TPropertyDeclReport> properties;
  std::vector<TMethodDeclReport> methods;
};

TClassReport ReportOf(NORVHAV20::ICIMClass& cls);

TClassKind KindOf(const NORVHAV20::ICIMClass& cls);
// The name of the superclass, empty for a top-level class.
std::string SuperclassName(const NORVHAV20::ICIMClass& cls);

}  // namespace havhost
