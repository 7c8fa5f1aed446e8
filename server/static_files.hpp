// The static files as they are served: a table that is made once.
#ifndef QUILLO_SERVER_STATIC_FILES_HPP
#define QUILLO_SERVER_STATIC_FILES_HPP

#include <map>
#include <optional>
#include <string>

#include "answer.hpp"
#include "incoming.hpp"
#include "page.hpp"

namespace QuilloServer {

class FileTable {
public:
    // Of the files that are known now. They outlive the table.
    FileTable();

    // The file at the request's path, or the word that the client has it already; nothing when
    // there is no such file.
    std::optional<Answer> Find(Incoming const& incoming) const;

private:
    struct Entry {
        StaticFile const* file;
        std::string tag;  // changes with the file's bytes
    };
    std::map<std::string, Entry> entries_;
};

// Whether the field If-None-Match names `tag` (RFC 9110, 13.1.2).
bool IsTagNamed(std::string const& knownTags, std::string const& tag);

}  // namespace QuilloServer

#endif
