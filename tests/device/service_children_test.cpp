// Services that leave a child process behind, which holds both ends of the pipe and a copy of what
// the stream had buffered.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <optional>

#include "device/device_fixture.hpp"
#include "support/hang_guard.hpp"
#include "support/rounds.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::vector<std::string>> Rows;

constexpr std::size_t capacity = 4096;

// A child of the service that lives until it is told to end, with all descriptors of its own.
class LeftBehind {
public:
    LeftBehind() {
        EXPECT_EQ(pipe2(gate, O_CLOEXEC), 0);
        pid = fork();
        if (pid < 0) {
            std::abort();
        }
        if (pid == 0) {
            alarm(20);
            close(gate[1]);
            char byte;
            std::exit(read(gate[0], &byte, 1) == 0 ? 0 : 1);
        }
        close(gate[0]);
    }
    LeftBehind(LeftBehind const&) = delete;
    LeftBehind& operator=(LeftBehind const&) = delete;
    ~LeftBehind() {
        if (!hasEnded) {
            kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
            close(gate[1]);
        }
    }

    bool IsAlive() const { return waitpid(pid, nullptr, WNOHANG) == 0; }

    // Has it call exit(), which writes what is in its streams' buffers. Whether it got there.
    bool Exits() {
        close(gate[1]);
        int status = 0;
        hasEnded = waitpid(pid, &status, 0) == pid;
        return hasEnded && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    int gate[2];
    pid_t pid;
    bool hasEnded = false;
};

// How a service writes: `flushed` goes into the pipe, `buffered` stays in the stream, and then the
// child is made.
struct Written {
    std::size_t flushed;
    std::size_t buffered;
};

Written const everyWritten[] = {{0, 300}, {capacity - 10, 5}, {capacity, 0}, {0, 0},
                                {0, 1},   {0, capacity},      {256, 256},    {capacity - 10, 10},
                                {512, 0}};

class ServiceChildrenTest : public DeviceTest {
protected:
    ServiceChildrenTest() {
        Platform().onInitialize = [](ZOV_AppData* request) {
            int const size = static_cast<int>(capacity);
            EXPECT_EQ(fcntl(fileno(request->out), F_SETPIPE_SZ, size), size);
        };
        Platform().onFormat = [this](ZOV_AppData* request) { Serve(request->out); };
        Platform().onTranslate = [this](std::string const&) {
            Serve(app.out);
            return std::string();
        };
        Platform().answer = "";
    }

    void Serve(std::FILE* out) {
        std::string const text = Text();
        std::fwrite(text.data(), 1, written.flushed, out);
        std::fflush(out);
        std::fwrite(text.data() + written.flushed, 1, written.buffered, out);
        child.emplace();
        if (exitsAtOnce) {
            EXPECT_TRUE(child->Exits());
        }
    }

    std::string Text() const { return Pattern(written.flushed + written.buffered); }

    std::string Translation() { return TranslatePhrase(app, "Storage", LoaContext_Html); }

    // The one value that all of the answer is; empty when there is no answer.
    std::string Value() {
        Rows rows;
        EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name"}, rows),
                  Platform().formatResult);
        return rows.empty() ? std::string() : rows.front().front();
    }

    // Asks in both ways, and tells what the answer was.
    void ForEachRequest(std::function<void(std::string const& answer)> const& expect) {
        for (int i = 0; i < Rounds(static_cast<int>(std::size(everyWritten))); ++i) {
            HangGuard const guard;
            written = everyWritten[i];
            SCOPED_TRACE(std::to_string(written.flushed) + " + " +
                         std::to_string(written.buffered));
            expect(Translation());
            EXPECT_EQ(app.out, serverOut);
            expect(Value());
            EXPECT_EQ(app.out, serverOut);
            child.reset();
            EXPECT_EQ(Opened(), std::set<int>());
        }
    }

    void TearDown() override {
        child.reset();
        DeviceTest::TearDown();
    }

    Written written = {0, 0};
    std::optional<LeftBehind> child;
    bool exitsAtOnce = false;
};

TEST_F(ServiceChildrenTest, AChildThatHoldsThePipeOpenIsNotWaitedFor) {
    ForEachRequest([&](std::string const& answer) {
        EXPECT_EQ(answer, Text());
        EXPECT_TRUE(child->IsAlive());
    });
}

TEST_F(ServiceChildrenTest, AChildThatExitsLaterAddsNothingToTheAnswer) {
    ForEachRequest([&](std::string const& answer) {
        EXPECT_EQ(answer, Text());
        EXPECT_TRUE(child->Exits());
    });
}

// The library cannot tell the child's copy of the stream's buffer from the service's own.
TEST_F(ServiceChildrenTest, AChildThatExitsAtOnceAddsWhatTheServiceHasNotFlushed) {
    exitsAtOnce = true;
    for (Written const& row : {Written{0, 300}, {300, 0}, {256, 100}, {capacity, 0}}) {
        HangGuard const guard;
        written = row;
        EXPECT_EQ(Value(), Text() + Text().substr(row.flushed));
        EXPECT_EQ(app.out, serverOut);
    }
}

TEST_F(ServiceChildrenTest, ARequestThatIsGivenUpDoesNotWaitForAChild) {
    Platform().formatResult = 1;
    for (Written const& row : {Written{0, 300}, {capacity - 10, 10}, {capacity, 0}}) {
        HangGuard const guard;
        written = row;
        EXPECT_EQ(Value(), "");
        EXPECT_EQ(app.out, serverOut);
        EXPECT_TRUE(child->Exits());
    }
    // What the stream has buffered finds no room, and the child keeps the pipe from being broken.
    HangGuard const guard;
    written = {capacity, 300};
    EXPECT_EQ(Value(), "");
    EXPECT_TRUE(child->IsAlive());
}

}  // namespace
