// SqliteSubject: SQLite in memory, with prepared statements and an index at both ends of the
// links.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "bench/Changes.h"
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
  std::uint64_t GetAndRead(std::size_t place);
  std::size_t Enumerate();
  std::uint64_t TotalSize();
  void MakeLink(std::size_t from, std::size_t to);
  std::size_t Associators(std::size_t place);
  std::size_t References(std::size_t place);

  // As InmemSubject's. Nothing is derived here: kDerived changes nothing.
  void PrepareChanges(std::size_t firstFree);
  void Do(Change change);
  void Undo(Change change);

 private:
  void Run(const char* sql);
  sqlite3_stmt* Statement(const char* sql);
  std::size_t Rows(sqlite3_stmt* statement, std::size_t place);
  void RunWith(sqlite3_stmt* statement, std::initializer_list<std::string> texts);
  void BindText(sqlite3_stmt* statement, int place, const std::string& text);

  sqlite3* m_db = nullptr;
  sqlite3_stmt* m_insert = nullptr;
  sqlite3_stmt* m_get = nullptr;
  sqlite3_stmt* m_all = nullptr;
  sqlite3_stmt* m_link = nullptr;
  sqlite3_stmt* m_associators = nullptr;
  sqlite3_stmt* m_references = nullptr;
  sqlite3_stmt* m_remove = nullptr;
  sqlite3_stmt* m_unlink = nullptr;
  sqlite3_stmt* m_relink = nullptr;
  sqlite3_stmt* m_caption = nullptr;
  std::vector<std::string> m_paths;
  std::size_t m_free = 0;
  std::unique_ptr<SqliteSubject> m_neighbour;
};

}  // namespace havbench
