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
  m_references = Statement(
      "SELECT * FROM link WHERE antecedent=?1 UNION ALL SELECT * FROM link WHERE dependent=?1");
  m_remove = Statement("DELETE FROM disk WHERE path=?");
  m_unlink = Statement("DELETE FROM link WHERE antecedent=? AND dependent=?");
  m_relink = Statement("UPDATE link SET dependent=? WHERE antecedent=?");
  m_caption = Statement("UPDATE disk SET caption='changed' WHERE path=?");
}

SqliteSubject::~SqliteSubject() {
  for (sqlite3_stmt* statement : {m_insert, m_get, m_all, m_link, m_associators, m_references,
                                  m_remove, m_unlink, m_relink, m_caption})
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

std::uint64_t SqliteSubject::GetAndRead(std::size_t place) {
  BindText(m_get, 1, m_paths[place]);
  const bool found = sqlite3_step(m_get) == SQLITE_ROW;
  const auto size = found ? sqlite3_column_int64(m_get, 6) : 0;
  sqlite3_reset(m_get);
  return static_cast<std::uint64_t>(size);
}

std::size_t SqliteSubject::Enumerate() {
  std::size_t visited = 0;
  while (sqlite3_step(m_all) == SQLITE_ROW) ++visited;
  sqlite3_reset(m_all);
  return visited;
}

std::uint64_t SqliteSubject::TotalSize() {
  std::uint64_t total = 0;
  while (sqlite3_step(m_all) == SQLITE_ROW)
    total += static_cast<std::uint64_t>(sqlite3_column_int64(m_all, 6));
  sqlite3_reset(m_all);
  return total;
}

void SqliteSubject::MakeLink(std::size_t from, std::size_t to) {
  RunWith(m_link, {DiskNumber(from).Path(), DiskNumber(to).Path()});
}

std::size_t SqliteSubject::Rows(sqlite3_stmt* statement, std::size_t place) {
  std::size_t found = 0;
  BindText(statement, 1, m_paths[place]);
  while (sqlite3_step(statement) == SQLITE_ROW) ++found;
  sqlite3_reset(statement);
  return found;
}

std::size_t SqliteSubject::Associators(std::size_t place) { return Rows(m_associators, place); }

std::size_t SqliteSubject::References(std::size_t place) { return Rows(m_references, place); }

void SqliteSubject::RunWith(sqlite3_stmt* statement, std::initializer_list<std::string> texts) {
  int place = 0;
  for (const std::string& text : texts) BindText(statement, ++place, text);
  if (sqlite3_step(statement) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(m_db));
  sqlite3_reset(statement);
}

void SqliteSubject::PrepareChanges(std::size_t firstFree) {
  Make(DiskNumber(firstFree));
  Make(DiskNumber(firstFree + 1));
  MakeLink(firstFree, firstFree + 1);
  m_free = firstFree;
  m_neighbour = std::make_unique<SqliteSubject>();
}

void SqliteSubject::Do(Change change) {
  const std::string first = DiskNumber(m_free).Path();
  const std::string second = DiskNumber(m_free + 1).Path();
  switch (change) {
    case Change::kNone:
    case Change::kDerived: break;
    case Change::kInstance: Make(DiskNumber(m_free + 2)); break;
    case Change::kLink: RunWith(m_link, {second, first}); break;
    case Change::kUnlink:
      RunWith(m_link, {second, first});
      RunWith(m_unlink, {second, first});
      break;
    case Change::kReference:
    case Change::kRekey: RunWith(m_relink, {first, first}); break;
    case Change::kProperty: RunWith(m_caption, {m_paths.front()}); break;
    case Change::kNeighbour: m_neighbour->Make(DiskNumber(0)); break;
  }
}

void SqliteSubject::Undo(Change change) {
  const std::string first = DiskNumber(m_free).Path();
  const std::string second = DiskNumber(m_free + 1).Path();
  if (change == Change::kInstance) RunWith(m_remove, {DiskNumber(m_free + 2).Path()});
  if (change == Change::kLink) RunWith(m_unlink, {second, first});
  if (change == Change::kReference || change == Change::kRekey) RunWith(m_relink, {second, first});
  if (change == Change::kNeighbour)
    m_neighbour->RunWith(m_neighbour->m_remove, {DiskNumber(0).Path()});
}

}  // namespace havbench
