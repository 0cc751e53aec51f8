// CimSchema: where the DMTF schema 2.49 is, which is not part of the project: the folder
// that the environment variable HAV_CIM_SCHEMA names, else beside the source tree. Suites
// that use it are compiled with HAV_CIM_SCHEMA_FOLDER.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace havtest {

inline std::filesystem::path CimSchemaFile() {
  const char* const said = std::getenv("HAV_CIM_SCHEMA");
  return std::filesystem::u8path(said != nullptr ? said : HAV_CIM_SCHEMA_FOLDER) /
         "cim_schema_2.49.0.mof";
}

// Empty when the schema is there, else what to say of it.
inline std::string WhyNoCimSchema() {
  std::error_code error;
  if (std::filesystem::is_regular_file(CimSchemaFile(), error)) return {};
  return "the DMTF schema is not at " + CimSchemaFile().parent_path().u8string() +
         "; HAV_CIM_SCHEMA says where it is";
}

// True where a missing schema is a failure and no reason to skip.
inline bool IsCimSchemaRequired() {
  const char* const required = std::getenv("HAV_REQUIRE_ALL");
  return required != nullptr && std::string(required) == "1";
}

}  // namespace havtest
