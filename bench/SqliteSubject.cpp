#include "bench/SqliteSubject.h"

#include <stdexcept>

namespace havbench {

SqliteSubject::SqliteSubject() {
  if (sqlite3_open(":memory:", &m_db) != SQLITE_OK) throw std::runtime_error("sqlite3_open");
  Run("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
      "CREATE TABLE disk(path TEXT PRIMARY KEY, system TEXT, device TEXT, caption TEXT,"
      " vendor TEXT, model TEXT, size INTEGER, free INTEGER, block INTEGER, sectors INTEGER,"
      " cylinders INTEGER, removable INTEGER, healthy INTEGER) WITHOUT ROWID;"
      "CREATE TABLE link(antecedent TEXT, dependent TEXT);"
      "CREATE INDEX link_a ON link(antecedent); CREATE INDEX link_d ON link(dependent);"
      "BEGIN");
  m_insert = Statement("INSERT INTO disk VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?)");
  m_get = Statement("SELECT * FROM disk WHERE path=?");
  m_all = Statement("SELECT * FROM disk ORDER BY path");
  m_link = Statement("INSERT INTO link VALUES(?,?)");
  m_associators = Statement(
      "SELECT disk.* FROM link JOIN disk ON disk.path=link.dependent WHERE link.antecedent=?1"
      " UNION ALL "
      "SELECT disk.* FROM link JOIN disk ON disk.path=link.antecedent WHERE link.dependent=?1");
}

SqliteSubject::~SqliteSubject() {
  for (sqlite3_stmt* statement : {m_insert, m_get, m_all, m_link, m_associators})
    sqlite3_finalize(statement);
  sqlite3_close(m_db);
}

void SqliteSubject::Run(const char* sql) {
  if (sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(m_db));
}

sqlite3_stmt* SqliteSubject::Statement(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(m_db, sql, -1, &statement, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(m_db));
  return statement;
}

void SqliteSubject::BindText(sqlite3_stmt* statement, int place, const std::string& text) {
  sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

void SqliteSubject::Make(const Disk& disk) {
  const std::string path = disk.Path();
  BindText(m_insert, 1, path);
  BindText(m_insert, 2, disk.systemName);
  BindText(m_insert, 3, disk.deviceId);
  BindText(m_insert, 4, disk.caption);
  BindText(m_insert, 5, disk.vendor);
  BindText(m_insert, 6, disk.model);
  sqlite3_bind_int64(m_insert, 7, static_cast<sqlite3_int64>(disk.size));
  sqlite3_bind_int64(m_insert, 8, static_cast<sqlite3_int64>(disk.freeSpace));
  sqlite3_bind_int64(m_insert, 9, disk.blockSize);
  sqlite3_bind_int64(m_insert, 10, disk.sectors);
  sqlite3_bind_int64(m_insert, 11, disk.cylinders);
  sqlite3_bind_int(m_insert, 12, disk.removable);
  sqlite3_bind_int(m_insert, 13, disk.healthy);
  if (sqlite3_step(m_insert) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(m_db));
  sqlite3_reset(m_insert);
}

void SqliteSubject::Prepare(const std::vector<std::size_t>& numbers) {
  for (const std::size_t number : numbers) m_paths.push_back(DiskNumber(number).Path());
}

bool SqliteSubject::Get(std::size_t place) {
  BindText(m_get, 1, m_paths[place]);
  const bool found = sqlite3_step(m_get) == SQLITE_ROW;
  sqlite3_reset(m_get);
  return found;
}

std::size_t SqliteSubject::Enumerate() {
  std::size_t visited = 0;
  while (sqlite3_step(m_all) == SQLITE_ROW) ++visited;
  sqlite3_reset(m_all);
  return visited;
}

void SqliteSubject::MakeLink(std::size_t from, std::size_t to) {
  const std::string antecedent = DiskNumber(from).Path();
  const std::string dependent = DiskNumber(to).Path();
  BindText(m_link, 1, antecedent);
  BindText(m_link, 2, dependent);
  if (sqlite3_step(m_link) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(m_db));
  sqlite3_reset(m_link);
}

std::size_t SqliteSubject::Associators(std::size_t place) {
  std::size_t found = 0;
  BindText(m_associators, 1, m_paths[place]);
  while (sqlite3_step(m_associators) == SQLITE_ROW) ++found;
  sqlite3_reset(m_associators);
  return found;
}

}  // namespace havbench
