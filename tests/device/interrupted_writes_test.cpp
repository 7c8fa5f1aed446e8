// Writes to a full pipe that signals interrupt: what was not written is lost, and nothing hangs.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "device/device_fixture.hpp"
#include "support/hang_guard.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::vector<std::string>> Rows;

constexpr std::size_t page = 4096;

void DoNothing(int) {}

// As long as it lives, signals come over and over, and calls that wait end with EINTR.
class Interruptions {
public:
    Interruptions() {
        struct sigaction action {};
        action.sa_handler = DoNothing;  // without SA_RESTART
        EXPECT_EQ(sigaction(SIGUSR1, &action, &before), 0);
        sigevent event{};
        event.sigev_notify = SIGEV_SIGNAL;
        event.sigev_signo = SIGUSR1;
        EXPECT_EQ(timer_create(CLOCK_MONOTONIC, &event, &timer), 0);
        itimerspec const pace = {{0, 2000000}, {0, 2000000}};
        EXPECT_EQ(timer_settime(timer, 0, &pace, nullptr), 0);
    }
    Interruptions(Interruptions const&) = delete;
    Interruptions& operator=(Interruptions const&) = delete;
    ~Interruptions() {
        timer_delete(timer);
        sigaction(SIGUSR1, &before, nullptr);
    }

private:
    struct sigaction before {};
    timer_t timer{};
};

class InterruptedWritesTest : public DeviceTest {
protected:
    InterruptedWritesTest() {
        Platform().answer = "";
        HavePipe(page);
    }

    static void HavePipe(std::size_t capacity) {
        Platform().onInitialize = [capacity](ZOV_AppData* request) {
            int const size = static_cast<int>(capacity);
            EXPECT_EQ(fcntl(fileno(request->out), F_SETPIPE_SZ, size), size);
        };
    }

    static std::size_t Write(std::FILE* out, std::string const& text) {
        return std::fwrite(text.data(), 1, text.size(), out);
    }

    HangGuard const guard;
};

// Whether the service flushes what is buffered, or the library closes the stream.
TEST_F(InterruptedWritesTest, AStreamThatIsInterruptedLosesWhatItHadBuffered) {
    for (bool const flushesItself : {false, true}) {
        for (std::size_t const flushed : {page - 100, page}) {
            for (std::size_t const buffered : {std::size_t{101}, std::size_t{300}, page}) {
                LoaReq request(app);
                ASSERT_EQ(request.Init(), 0);
                std::string const text = Pattern(flushed + buffered);
                Write(app.out, text.substr(0, flushed));
                EXPECT_EQ(std::fflush(app.out), 0);
                Write(app.out, text.substr(flushed));
                Interruptions const interruptions;
                if (flushesItself) {
                    EXPECT_EQ(std::fflush(app.out), EOF);
                    EXPECT_EQ(errno, EINTR);
                }
                EXPECT_EQ(request.Finish(), text.substr(0, flushed));
            }
        }
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(InterruptedWritesTest, AnAnswerThatBreaksOffInAWriteHasWhatThePipeTook) {
    HavePipe(2 * page);
    std::string const value = Pattern(3 * page);
    Platform().onFormat = [&](ZOV_AppData* request) {
        Interruptions const interruptions;
        EXPECT_LT(Write(request->out, value), value.size());
        EXPECT_EQ(errno, EINTR);
    };
    Rows rows;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{value.substr(0, 2 * page)}}));
    Platform().formatResult = 1;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name"}, rows), 1);
    EXPECT_EQ(rows, Rows());
}

}  // namespace
