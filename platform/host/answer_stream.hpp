// The writing of an answer, which never blocks on a pipe.
//
// The library puts a pipe in the place of the request's output and reads it only when the formatter
// or the get-function has returned. An answer that does not fit would wait for ever, so it is not
// begun.
//
// A pipe holds a number of pages, 16 unless it is changed. One write takes as many pages as its
// length needs, and fills up a page begun before only if its last, incomplete page fits there as a
// whole. So two neighbouring pages hold more than one page between them, and of what lies in the
// pipe already only an upper bound of the pages is known; in an empty pipe the count is exact.
#ifndef QUILLO_HOST_ANSWER_STREAM_HPP
#define QUILLO_HOST_ANSWER_STREAM_HPP

#include <cstdio>
#include <string>

namespace QuilloHost {

// Writes `answer`, behind what the stream has buffered, and flushes. Returns true; or false behind
// a log entry. A pipe that is too small is enlarged where the system allows it; an answer that does
// not fit all the same is not written, not even in part. `subject` says in the log what it answers:
// object "memory". Whether a broken pipe ends the process (SIGPIPE) is the process's choice.
bool WriteAnswer(std::FILE* out, std::string const& answer, std::string const& subject);

}  // namespace QuilloHost

#endif
