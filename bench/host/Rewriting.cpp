#include "bench/host/Rewriting.h"

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <vector>

namespace tavrel::bench {
namespace {

struct CloseDatabase {
  void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

struct Part {
  std::string type;
  std::string name;
  std::string statement;
};

void Run(const Database& database, const std::string& statements) {
  if (sqlite3_exec(database.get(), statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK)
    return;
  throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(database.get()));
}

std::vector<Part> PartsOf(const Database& database) {
  std::vector<Part> parts;
  const auto take = [](void* context, int, char** values, char**) {
    static_cast<std::vector<Part>*>(context)->push_back({values[0], values[1], values[2]});
    return 0;
  };
  sqlite3_exec(database.get(),
               "SELECT type, name, sql FROM old.sqlite_master WHERE sql IS NOT NULL", take, &parts,
               nullptr);
  return parts;
}

}  // namespace

void RewriteDatabase(const std::string& from, const std::string& to) {
  std::filesystem::remove(to);
  sqlite3* opened = nullptr;
  const int result = sqlite3_open(to.c_str(), &opened);
  const Database database(opened);
  if (result != SQLITE_OK) throw std::runtime_error("SQLite cannot open " + to);
  Run(database,
      "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE;"
      "PRAGMA temp_store = MEMORY; PRAGMA cache_size = -65536; ATTACH '" +
          from + "' AS old; BEGIN");
  const std::vector<Part> parts = PartsOf(database);
  for (const Part& part : parts) {
    if (part.type != "table") continue;
    Run(database, part.statement);
    Run(database, "INSERT INTO main." + part.name + " SELECT * FROM old." + part.name + " WHERE 1");
  }
  for (const Part& part : parts) {
    if (part.type != "table") Run(database, part.statement);
  }
  Run(database, "COMMIT");
}

}  // namespace tavrel::bench
