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

// One connection. Not to be open when the process forks.
class Database {
public:
    // Opens the file, or makes it. From then on other processes' locks are waited for, `patience`
    // milliseconds long.
    Database(std::string const& path, int patience);

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
