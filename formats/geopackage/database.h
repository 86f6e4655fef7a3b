// SQLite's handles, closed when they go out of scope; a failure is a std::runtime_error.
#ifndef FORMATS_GEOPACKAGE_DATABASE_H
#define FORMATS_GEOPACKAGE_DATABASE_H

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace formats::geopackage {

// A name as SQL has it: in double quotes, its own doubled.
std::string quoted(std::string_view name);

class Database {
  public:
    // Opens an empty file for one writer. Failures name the target.
    Database(const std::string& path, std::string target);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void run(const std::string& sql);
    void close();

    sqlite3* handle() const { return handle_; }
    // "TARGET: what went wrong".
    [[noreturn]] void fail(int code) const;
    void check(int code) const {
        if (code != SQLITE_OK) fail(code);
    }

  private:
    sqlite3* handle_ = nullptr;
    std::string target_;
};

// A prepared statement that is run over and over. What is bound lives until run() has returned.
class Statement {
  public:
    Statement(const Database& database, const std::string& sql);
    ~Statement() { sqlite3_finalize(statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // Places are counted from 1. What was bound stays bound.
    void bind(int place, int64_t value) { check(sqlite3_bind_int64(statement_, place, value)); }
    void bind(int place, double value) { check(sqlite3_bind_double(statement_, place, value)); }
    void bind(int place, std::string_view text);
    void bind(int place, std::span<const std::byte> bytes);
    void bindNothing(int place) { check(sqlite3_bind_null(statement_, place)); }
    void run();

  private:
    void check(int code) const { database_.check(code); }

    const Database& database_;
    sqlite3_stmt* statement_ = nullptr;
};

}  // namespace formats::geopackage

#endif
