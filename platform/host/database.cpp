#include "host/database.hpp"

namespace QuilloHost {

namespace {

sqlite3* Open(std::string const& path) {
    sqlite3* connection = nullptr;
    int const flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOFOLLOW;
    int const result = sqlite3_open_v2(path.c_str(), &connection, flags, nullptr);
    if (result != SQLITE_OK) {
        sqlite3_close(connection);
        throw DatabaseError(path + ": " + sqlite3_errstr(result));
    }
    return connection;
}

}  // namespace

Database::Database(std::string const& file, int patience)
    : path(file),
      end(std::chrono::steady_clock::now() + std::chrono::milliseconds(patience)),
      connection(Open(file), sqlite3_close) {
    sqlite3_busy_timeout(handle(), patience);
}

void Database::Run(char const* sql) {
    int result = sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr);
    // A reader that becomes a writer is not made to wait by SQLite, since two of them would wait
    // for each other.
    while (result == SQLITE_BUSY && std::chrono::steady_clock::now() < end) {
        sqlite3_sleep(1);
        result = sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr);
    }
    if (result != SQLITE_OK) {
        Fail();
    }
}

void Database::Fail() const {
    throw DatabaseError(path + ": " + sqlite3_errmsg(handle()));
}

Statement::Statement(Database& database, char const* sql)
    : owner(database), statement(nullptr, sqlite3_finalize) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(owner.handle(), sql, -1, &prepared, nullptr) != SQLITE_OK) {
        owner.Fail();
    }
    statement.reset(prepared);
}

Statement& Statement::Bind(std::string const& text) {
    // SQLite copies the text, for it may be gone before the statement is run.
    if (sqlite3_bind_text(statement.get(), ++bound, text.data(), static_cast<int>(text.size()),
                          SQLITE_TRANSIENT) != SQLITE_OK) {
        owner.Fail();
    }
    return *this;
}

bool Statement::Step() {
    int const result = sqlite3_step(statement.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        owner.Fail();
    }
    return result == SQLITE_ROW;
}

bool Statement::IsNull(int column) const {
    return sqlite3_column_type(statement.get(), column) == SQLITE_NULL;
}

std::string Statement::Text(int column) const {
    void const* const bytes = sqlite3_column_blob(statement.get(), column);
    int const size = sqlite3_column_bytes(statement.get(), column);
    return std::string(static_cast<char const*>(bytes), static_cast<std::size_t>(size));
}

}  // namespace QuilloHost
