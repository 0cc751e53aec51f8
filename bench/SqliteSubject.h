// SqliteSubject: SQLite in memory, with prepared statements and an index at both ends of the
// links.
#pragma once

#include <string>
#include <vector>

#include <sqlite3.h>

#include "bench/Disk.h"

namespace havbench {

class SqliteSubject {
 public:
  static constexpr const char* kName = "sqlite";

  SqliteSubject();
  ~SqliteSubject();
  SqliteSubject(const SqliteSubject&) = delete;
  SqliteSubject& operator=(const SqliteSubject&) = delete;

  void Make(const Disk& disk);
  void Prepare(const std::vector<std::size_t>& numbers);
  bool Get(std::size_t place);
  std::size_t Enumerate();
  void MakeLink(std::size_t from, std::size_t to);
  std::size_t Associators(std::size_t place);

 private:
  void Run(const char* sql);
  sqlite3_stmt* Statement(const char* sql);
  void BindText(sqlite3_stmt* statement, int place, const std::string& text);

  sqlite3* m_db = nullptr;
  sqlite3_stmt* m_insert = nullptr;
  sqlite3_stmt* m_get = nullptr;
  sqlite3_stmt* m_all = nullptr;
  sqlite3_stmt* m_link = nullptr;
  sqlite3_stmt* m_associators = nullptr;
  std::vector<std::string> m_paths;
};

}  // namespace havbench
