// The calls that change files, each of which may fail or be the last that the process makes. The
// executable that links disk_calls.cpp defines them in the place of the C library's, for SQLite
// too.
//
// They are mkdir, rmdir, open where it may make a file, write, pwrite, ftruncate, fsync, fdatasync,
// rename and unlink; each is counted while an object of this kind lives. Nothing is synced: a
// killed process loses nothing that it wrote, and the tests are faster by far.
//
// The calls that only look at files may fail as well, which are counted by themselves: open, read,
// pread, stat, lstat, fstat, mmap, and fcntl where it asks for a lock.
#ifndef QUILLO_TESTS_PLATFORM_DISK_CALLS_HPP
#define QUILLO_TESTS_PLATFORM_DISK_CALLS_HPP

#include <string>

class DiskCalls {
public:
    enum class Trouble {
        Failure,
        FailureFromThenOn,
        ReadFailure,
        ReadFailureFromThenOn,
        ShortWrite,
        ShortRead,
        Cut,
        CutInTheMiddle,
        CutThatLoses
    };

    // Lets `allowed` calls pass. The next one fails with `error`, alone or with all that follow. Of
    // ShortWrite and ShortRead, which count writes and reads alone, it does half of what it should
    // and says so.
    DiskCalls(int allowed, Trouble trouble, int error);

    // Lets `allowed` calls pass. The next one kills the process: before it has begun; or, where it
    // writes, with half of its bytes written; or so that `folder` loses all that was not synced,
    // and the folders in it. What is there now counts as synced.
    DiskCalls(int allowed, Trouble trouble, std::string const& folder);

    DiskCalls(DiskCalls const&) = delete;
    DiskCalls& operator=(DiskCalls const&) = delete;
    ~DiskCalls();

    // The folder loses what was not synced.
    static void LoseUnsynced();

    // The first call that failed, "" when none did.
    static std::string const& FirstFailed();
};

#endif
