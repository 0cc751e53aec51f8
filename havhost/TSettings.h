// TSettings: what the command line says, with its defaults.
//
// Ownership: a value.
#pragma once

#include <string>
#include <vector>

#include "havhost/TTextStyle.h"

namespace havhost {

struct TSettings {
  static constexpr char kDefaultNamespace[] = "root/cimv2";

  // Where the namespace comes from: the MOF files, or without any the live inventory.
  std::string namespaceName;  // empty: what the MOF says, else kDefaultNamespace
  std::vector<std::string> mofFiles;
  std::vector<std::string> includeFolders;
  bool strict = false;       // of MOF: what refers to nothing is an error, and not left out
  std::string schemaFolder;  // empty: the installed schema
  std::string rootFolder = "/";
  bool collects = true;  // without: the classes of the inventory alone
  std::string plugin;    // empty: the installed plug-in

  // What to look at. Empty filters match everything.
  std::string className;
  std::string path;
  std::string associationClass;
  std::string resultClass;
  std::string role;
  std::string resultRole;
  bool deep = false;
  std::string where;              // a condition, as TFilter reads it
  std::vector<std::string> sort;  // names of properties
  bool reverse = false;

  // How to show it.
  std::string format = "text";
  std::string outputFile;  // empty: standard output
  bool raw = false;
  bool all = false;                  // with what is empty and what is bookkeeping
  std::vector<std::string> columns;  // names of properties; empty: all
  bool namesOnly = false;
  std::string color = "auto";
  bool noPager = false;
  TTextStyle style;  // what the console and the options before come to
  bool verbose = false;

  bool IsJson() const { return format == "json"; }
  bool IsCsv() const { return format == "csv"; }
  bool IsMof() const { return format == "mof"; }
  bool IsHtml() const { return format == "html"; }
};

}  // namespace havhost
