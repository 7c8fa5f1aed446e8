// A thin layer over SQLite: a connection and a statement that close themselves, and failures as
// exceptions.
#ifndef QUILLO_HOST_DATABASE_HPP
#define QUILLO_HOST_DATABASE_HPP

#include <sqlite3.h>

#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace QuilloHost {

// The database's path, what SQLite says went wrong, what the system says, and what to do.
class DatabaseError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A database that could not be opened or written, or a file that SQLite keeps beside it.
class NoAccess : public DatabaseError {
public:
    using DatabaseError::DatabaseError;
};

// What a connection is for. To make the file, and to write to it; to read it, with what SQLite
// keeps beside it; or to read the file by itself, as nobody writes to it meanwhile.
enum class Access : int { Write, Read, ReadUnchanging };

// One connection. Not to be open when the process forks.
class Database {
public:
    // From then on other processes' locks are waited for, `patience` milliseconds long.
    Database(std::string const& path, int patience, Access access = Access::Write);

    // Runs statements that have no result, and that may be run again if they were cut short by
    // another process's lock. Throws DatabaseError.
    void Run(char const* sql);

    [[noreturn]] void Fail() const;

    sqlite3* handle() const { return connection.get(); }

private:
    std::string const path;
    std::chrono::steady_clock::time_point const end;  // of the patience
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> connection;
};

// One statement, with its texts bound in the order of its '?'.
class Statement {
public:
    Statement(Database& database, char const* sql);

    Statement& Bind(std::string_view text);

    // Goes to the next row of the result; false behind the last one. Throws DatabaseError.
    bool Step();

    // The text of the first column; nothing for NULL. Only on a row.
    std::optional<std::string> Text() const;

private:
    Database& owner;
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement;
    int bound = 0;
};

}  // namespace QuilloHost

#endif
