#include "static_files.hpp"

#include <vector>

#include "content_security.hpp"
#include "digests.hpp"

namespace QuilloServer {

FileTable::FileTable() {
    for (StaticFile const* file : StaticFiles()) {
        entries_[file->path] = {file, '"' + Sha256Base64(file->bytes).substr(0, 22) + '"'};
    }
}

std::optional<Answer> FileTable::Find(Incoming const& incoming) const {
    auto const found = entries_.find(incoming.path);
    if (found == entries_.end()) {
        return std::nullopt;
    }
    Entry const& entry = found->second;
    Answer answer;
    answer.headers.emplace_back("Cache-Control", "public, max-age=3600");
    answer.headers.emplace_back("ETag", entry.tag);
    if (IsTagNamed(incoming.knownTags, entry.tag)) {
        answer.status = 304;
    } else {
        answer.headers.emplace_back("Content-Type", entry.file->type);
        answer.file = entry.file->bytes;
    }
    AddCommonHeaders(answer, SecurityPolicy(""));
    return answer;
}

bool IsTagNamed(std::string const& knownTags, std::string const& tag) {
    std::vector<std::string> known;
    Quillo::Split(knownTags, ", \t", known, Quillo::SkipEmpty);
    for (std::string const& one : known) {
        if (one == "*" || one == tag || one == "W/" + tag) {
            return true;
        }
    }
    return false;
}

}  // namespace QuilloServer
