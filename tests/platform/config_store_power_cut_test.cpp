// Power cuts: an update is cut short at each call by which it changes the disk, and afterwards the
// old values hold or the new ones.
//
// QUILLO_POWER_CUTS is the number of cuts at random calls, with random values, 200 without it;
// QUILLO_POWER_CUT_SEED repeats a run.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <tuple>

#include "host/database.hpp"
#include "platform/disk_calls.hpp"
#include "platform/store_fixture.hpp"

using namespace QuilloHost;

namespace {

using Trouble = DiskCalls::Trouble;

class PowerCut : public StoreFixture {
protected:
    // Updates x in a process whose power is cut behind `allowed` calls, while the database is open
    // elsewhere or not. Returns whether it was cut.
    static bool Cut(std::string const& state, Trouble trouble, int allowed, int value,
                    bool isOpenElsewhere) {
        pid_t const child = fork();
        if (child == 0) {
            std::optional<Database> other;
            if (isOpenElsewhere) {
                other.emplace(state + "/configuration.db", 0).Run("SELECT * FROM setting");
            }
            std::filesystem::create_directories(state);
            DiskCalls const calls(allowed, trouble, state);
            long const status = ConfigUpdate(("x=" + std::to_string(value)).c_str());
            if (trouble == Trouble::CutThatLoses) {
                DiskCalls::LoseUnsynced();
            }
            _exit(status == 0 ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        bool const isCut = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        EXPECT_TRUE(isCut || status == 0) << status;
        return isCut;
    }

    static void ExpectWhole(std::string const& state) {
        Database database(state + "/configuration.db", 0);
        Statement check(database, "PRAGMA integrity_check");
        ASSERT_TRUE(check.Step());
        EXPECT_EQ(check.Text(), "ok");
    }

    static std::string Both(int value) {
        return std::to_string(value) + " " + std::to_string(value);
    }

    static int FromEnvironment(char const* name, int otherwise) {
        char const* const text = std::getenv(name);
        return text != nullptr ? std::stoi(text) : otherwise;
    }
};

struct Case {
    bool isNew;
    bool isOpenElsewhere;
};

class PowerCutAtEachCall : public PowerCut,
                           public testing::WithParamInterface<std::tuple<Trouble, Case>> {};

TEST_P(PowerCutAtEachCall, LeavesTheOldValuesOrTheNewOnes) {
    auto const [trouble, where] = GetParam();
    int seen[] = {0, 0};  // old values, new ones
    for (bool isCut = true; isCut;) {
        int const allowed = seen[0] + seen[1];
        SCOPED_TRACE("behind " + std::to_string(allowed) + " calls");
        TempFolder const place;
        SetStateFolder(place.path);
        if (!where.isNew) {
            ASSERT_EQ(ConfigUpdate("x=3"), 0);
        }
        isCut = Cut(place.path, trouble, allowed, 5, where.isOpenElsewhere);
        std::string const values = Values();
        bool const areNew = values == "5 5";
        EXPECT_TRUE(areNew || values == (where.isNew ? "0 0" : "3 3")) << values;
        EXPECT_TRUE(areNew || isCut) << "the update was done";
        ExpectWhole(place.path);
        ++seen[areNew ? 1 : 0];
    }
    EXPECT_GT(seen[0], 3);
    EXPECT_GT(seen[1], 0);
}

INSTANTIATE_TEST_SUITE_P(
    Cuts, PowerCutAtEachCall,
    testing::Combine(testing::Values(Trouble::Cut, Trouble::CutInTheMiddle, Trouble::CutThatLoses),
                     testing::Values(Case{true, false}, Case{false, false}, Case{false, true})));

TEST_F(PowerCut, LeavesTheOldValuesOrTheNewOnesWheneverItComes) {
    unsigned const seed = static_cast<unsigned>(
        FromEnvironment("QUILLO_POWER_CUT_SEED", static_cast<int>(std::random_device()() >> 1)));
    SCOPED_TRACE("QUILLO_POWER_CUT_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    int old = 0;
    ASSERT_EQ(ConfigUpdate("x=0"), 0);
    for (int cuts = FromEnvironment("QUILLO_POWER_CUTS", 200); cuts > 0;) {
        int const value = static_cast<int>(random());
        auto const trouble = static_cast<Trouble>(static_cast<int>(Trouble::Cut) + random() % 3);
        bool const isCut =
            Cut(State(), trouble, static_cast<int>(random() % 25), value, random() % 4 == 0);
        cuts -= isCut ? 1 : 0;
        std::string const values = Values();
        if (values == Both(value)) {
            old = value;
        }
        EXPECT_TRUE(isCut || old == value) << "the update was done";
        ASSERT_EQ(values, Both(old));
        ExpectWhole(State());
    }
}

}  // namespace
