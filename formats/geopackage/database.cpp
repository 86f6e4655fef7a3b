#include "formats/geopackage/database.h"

#include <cerrno>
#include <new>
#include <stdexcept>
#include <utility>

#include "formats/output.h"

namespace formats::geopackage {

std::string quoted(std::string_view name) {
    std::string result = "\"";
    for (const char c : name) {
        if (c == '"') result += c;
        result += c;
    }
    return result += '"';
}

Database::Database(const std::string& path, std::string target) : target_(std::move(target)) {
    const int code = sqlite3_open_v2(path.c_str(), &handle_,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
        const std::string reason = handle_ ? sqlite3_errmsg(handle_) : sqlite3_errstr(code);
        sqlite3_close(handle_);
        throw std::runtime_error(target_ + ": " + reason);
    }
}

Database::~Database() { sqlite3_close_v2(handle_); }

void Database::fail(int code) const {
    switch (code & 0xff) {
        case SQLITE_FULL:
            failed(target_, ENOSPC);
        case SQLITE_IOERR: {
            // A statement that is over has taken the handle's reason with it.
            const int last = errno;
            const int reason = sqlite3_system_errno(handle_);
            if (reason != 0 || last != 0) failed(target_, reason != 0 ? reason : last);
            break;
        }
        case SQLITE_NOMEM:
            throw std::bad_alloc();
    }
    throw std::runtime_error(target_ + ": " + sqlite3_errmsg(handle_));
}

void Database::run(const std::string& sql) {
    errno = 0;
    check(sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr));
}

void Database::close() {
    check(sqlite3_close(handle_));
    handle_ = nullptr;
}

Statement::Statement(const Database& database, const std::string& sql) : database_(database) {
    check(sqlite3_prepare_v3(database.handle(), sql.c_str(), static_cast<int>(sql.size()),
                             SQLITE_PREPARE_PERSISTENT, &statement_, nullptr));
}

void Statement::bind(int place, std::string_view text) {
    // An empty text is a text; one without an address would be a missing value.
    const char* start = text.empty() ? "" : text.data();
    check(sqlite3_bind_text64(statement_, place, start, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::bind(int place, std::span<const std::byte> bytes) {
    check(sqlite3_bind_blob64(statement_, place, bytes.data(), bytes.size(), SQLITE_STATIC));
}

void Statement::run() {
    const int code = sqlite3_step(statement_);
    if (code != SQLITE_DONE && code != SQLITE_ROW) {
        // The handle has the reason until the statement is reset.
        database_.fail(code);
    }
    sqlite3_reset(statement_);
}

}  // namespace formats::geopackage
