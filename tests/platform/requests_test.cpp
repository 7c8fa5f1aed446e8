// Requests of the library to the stand-alone platform through pipes of any size, which make their
// writer wait when they are full: none waits for ever.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <quillo>

#include "device/open_descriptors.hpp"
#include "host/host.hpp"
#include "host/sys/text_file.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/plain_user.hpp"
#include "support/flushed_text.hpp"
#include "support/hang_guard.hpp"

extern "C" {

int __real_loareq_initialize(ZOV_AppData* app);
int __real_fcntl(int fd, int command, long argument);

int __wrap_loareq_initialize(ZOV_AppData* app);
int __wrap_fcntl(int fd, int command, long argument);
}

namespace {

typedef std::vector<std::vector<std::string>> Rows;

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

// What is done to a request's pipe ahead of its answer.
std::function<void(std::FILE* out)> onPipe;

// Whether pipes stay as large as they are.
bool isFixed = false;

// The rows of an answer whose lines are one value each.
Rows RowsOf(std::string const& answer) {
    Rows rows;
    for (std::string const& line : QuilloHost::Lines(answer)) {
        rows.push_back({line});
    }
    return rows;
}

// One kind of pipe, one answer, and what is ahead of it.
struct Case {
    bool isFixed;
    std::size_t capacity;
    std::size_t size;
    std::size_t ahead;
    Flush flush;
};

std::ostream& operator<<(std::ostream& out, Case const& row) {
    return out << row.size << " bytes behind " << row.ahead << ", pipe of " << row.capacity
               << (row.isFixed ? ", fixed" : "") << ", flush " << static_cast<int>(row.flush);
}

// Every answer for a pipe of `capacity` bytes.
std::vector<Case> CasesOf(bool fixed, std::size_t capacity) {
    std::vector<Case> cases;
    for (std::size_t const size :
         {std::size_t{0}, std::size_t{1}, capacity - 1, capacity, capacity + 1, mebibyte}) {
        for (std::size_t const ahead : {0U, 192U, 4096U}) {
            for (Flush const flush : everyFlush) {
                cases.push_back({fixed, capacity, size, ahead, flush});
            }
        }
    }
    return cases;
}

class RequestsTest : public testing::Test {
protected:
    RequestsTest() : before(OpenDescriptors()) {
        app.out = stdout;
        QuilloHost::SetLogThreshold(QuilloHost::LogLevel::Error);
    }
    ~RequestsTest() override {
        QuilloHost::SetLogThreshold(QuilloHost::LogLevel::Info);
        onPipe = nullptr;
        isFixed = false;
    }

    // Tries pipes of every size, ones that may be enlarged and ones that may not.
    void ForEachCase(std::function<void(Case const&)> const& expect) {
        for (bool const fixed : {false, true}) {
            for (std::size_t const capacity : {std::size_t{4096}, std::size_t{65536}, mebibyte}) {
                for (Case const& row : CasesOf(fixed, capacity)) {
                    SCOPED_TRACE(testing::Message() << row);
                    HangGuard const guard;
                    HavePipe(row);
                    expect(row);
                    EXPECT_EQ(app.out, stdout);
                }
            }
        }
        EXPECT_EQ(OpenedSince(before), std::set<int>());
    }

    // A request is answered where its answer surely fits, is not where it cannot, and without an
    // answer there is an entry.
    static void ExpectFit(Case const& row, bool isAnswered, CapturedStderr const& log) {
        std::size_t const limit = row.isFixed ? row.capacity : mebibyte;
        std::size_t const mostAhead = row.ahead == 0 ? 0 : std::size_t{16384};  // pages begun
        EXPECT_TRUE(isAnswered || row.size + mostAhead > limit) << log.Text();
        EXPECT_FALSE(isAnswered && row.isFixed && row.size + row.ahead > limit);
        std::string const entry = ": the answer takes " + std::to_string(row.size) + " bytes";
        EXPECT_EQ(log.Text().find(entry) == std::string::npos, isAnswered) << log.Text();
    }

    ZOV_AppData app{};

private:
    static void HavePipe(Case const& row) {
        isFixed = false;
        onPipe = [row](std::FILE* out) {
            int const capacity = static_cast<int>(row.capacity);
            EXPECT_GE(fcntl(fileno(out), F_SETPIPE_SZ, capacity), capacity);
            EXPECT_EQ(fcntl(fileno(out), F_GETFL) & O_NONBLOCK, 0);
            isFixed = row.isFixed;
            WriteFlushed(out, LinesOf(row.ahead), row.flush);
        };
    }

    PlainUser const user;
    std::set<int> const before;
};

// The text in the place of a made-up machine's uptime is as long as the answer has to be.
TEST_F(RequestsTest, AnObjectIsAnsweredAsAWholeOrCannotBeHad) {
    FixtureMachine const machine;
    ForEachCase([&](Case const& row) {
        if (row.size == 0) {
            return;  // each record is a line
        }
        std::string const value(row.size - 1, 'x');
        machine.Write("proc/uptime", value + ".0\n");
        CapturedStderr const log;
        Rows rows = {{"old"}};
        bool const isAnswered =
            Quillo::GetObject(app, Quillo::ObjectType_Sys, "host", {"uptime"}, rows) == 0;
        Rows const answer = RowsOf(LinesOf(row.ahead) + value + "\n");
        EXPECT_TRUE(rows == (isAnswered ? answer : Rows()));
        ExpectFit(row, isAnswered, log);
    });
}

TEST_F(RequestsTest, APhraseIsTranslatedAsAWholeOrNotAtAll) {
    ForEachCase([&](Case const& row) {
        std::string const phrase(row.size, 'x');
        std::string const ahead = LinesOf(row.ahead);
        CapturedStderr const log;
        std::string const text = Quillo::TranslatePhrase(app, phrase, Quillo::LoaContext_None);
        bool const isAnswered = log.Text().find("the answer takes") == std::string::npos;
        EXPECT_TRUE(text == ahead + (isAnswered ? phrase : ""));
        ExpectFit(row, isAnswered, log);
    });
}

}  // namespace

int __wrap_loareq_initialize(ZOV_AppData* app) {
    if (onPipe) {
        onPipe(app->out);
    }
    return __real_loareq_initialize(app);
}

int __wrap_fcntl(int fd, int command, long argument) {
    if (isFixed && command == F_SETPIPE_SZ) {
        errno = EPERM;
        return -1;
    }
    return __real_fcntl(fd, command, argument);
}
