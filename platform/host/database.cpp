#include "host/database.hpp"

#include <cerrno>
#include <cstring>

namespace QuilloHost {

namespace {

char const* Advice(int result, int systemError) {
    // What could not be synced was written nevertheless, and may be found when all else that fails
    // works again.
    if (result == SQLITE_IOERR_FSYNC) {
        return "see to its disk and set the value again, for the old or the new one may hold now";
    }
    if (systemError == ENOSPC || systemError == EDQUOT || result == SQLITE_FULL) {
        return "make room on its disk";
    }
    if (result == SQLITE_CANTOPEN_SYMLINK) {
        return "put a file in the place of the symbolic link";
    }
    switch (result & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_PROTOCOL:
            return "do it again when the process that writes to it is done";
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            return "move it away, and every setting has its default again";
        case SQLITE_PERM:
        case SQLITE_READONLY:
        case SQLITE_CANTOPEN:
            return "let this process write to it and to its folder, and make room on its disk";
        default:
            return "see that its disk is sound and has room";
    }
}

int FlagsOf(Access access) {
    switch (access) {
        case Access::Write:
            return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOFOLLOW;
        case Access::Read:  // it settles for reading where the file may not be written
            return SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW;
        default:
            return SQLITE_OPEN_READONLY | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_URI;
    }
}

std::string NameFor(Access access, std::string const& path) {
    if (access != Access::ReadUnchanging) {
        return path;
    }
    std::string uri = "file:";
    for (char const c : path) {
        uri += c == '%' ? "%25" : c == '?' ? "%3f" : c == '#' ? "%23" : std::string(1, c);
    }
    return uri + "?immutable=1";
}

}  // namespace

Database::Database(std::string const& file, int patience, Access access)
    : path(file),
      end(std::chrono::steady_clock::now() + std::chrono::milliseconds(patience)),
      connection(nullptr, sqlite3_close) {
    sqlite3* opened = nullptr;
    int const result =
        sqlite3_open_v2(NameFor(access, path).c_str(), &opened, FlagsOf(access), nullptr);
    connection.reset(opened);
    if (result != SQLITE_OK) {
        Fail();
    }
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
    int const result = sqlite3_extended_errcode(handle());
    int const systemError = sqlite3_system_errno(handle());
    std::string message = path + ": " + sqlite3_errmsg(handle());
    if (systemError != 0) {
        message += std::string(" (") + std::strerror(systemError) + ")";
    }
    message += std::string(": ") + Advice(result, systemError);
    if ((result & 0xFF) == SQLITE_CANTOPEN || (result & 0xFF) == SQLITE_READONLY) {
        throw NoAccess(message);
    }
    throw DatabaseError(message);
}

Statement::Statement(Database& database, char const* sql)
    : owner(database), statement(nullptr, sqlite3_finalize) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(owner.handle(), sql, -1, &prepared, nullptr) != SQLITE_OK) {
        owner.Fail();
    }
    statement.reset(prepared);
}

Statement& Statement::Bind(std::string_view text) {
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

std::optional<std::string> Statement::Text() const {
    void const* const bytes = sqlite3_column_blob(statement.get(), 0);
    int const size = sqlite3_column_bytes(statement.get(), 0);
    if (sqlite3_column_type(statement.get(), 0) == SQLITE_NULL) {
        return std::nullopt;
    }
    return std::string(static_cast<char const*>(bytes), static_cast<std::size_t>(size));
}

}  // namespace QuilloHost
