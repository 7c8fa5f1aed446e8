// Power cuts: an assignment is cut short at each call by which it changes the disk, and afterwards
// the old values hold or the new ones.
//
// QUILLO_POWER_CUTS is the number of cuts at random calls, with random values, 200 without it;
// QUILLO_POWER_CUT_SEED repeats a run.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
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

// ConfigUpdate, which sets the stored value and the running one, or Cfg_SetAttrValue, which sets
// the running one alone.
enum class Call : int { Update, Set };

long Assign(Call call, int value) {
    std::string const text = std::to_string(value);
    return call == Call::Update ? ConfigUpdate(("x=" + text).c_str())
                                : Cfg_SetAttrValue("x", text.c_str());
}

class PowerCut : public StoreFixture {
protected:
    struct Place {
        std::string folder;  // what is in it may be lost
        std::string state;
    };

    // Assigns to x in a process whose power is cut behind `allowed` calls, while the database is
    // open elsewhere or not. Returns whether it was cut.
    static bool Cut(Place const& place, Trouble trouble, int allowed, Call call, int value,
                    bool isOpenElsewhere) {
        pid_t const child = fork();
        if (child == 0) {
            std::optional<Database> other;
            if (isOpenElsewhere) {
                other.emplace(FileIn(place), 0).Run("SELECT * FROM setting");
            }
            DiskCalls const calls(allowed, trouble, place.folder);
            long const status = Assign(call, value);
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

    static std::string FileIn(Place const& place) { return place.state + "/configuration.db"; }

    // As long as there is no database, there is nothing that could be damaged.
    static void ExpectWhole(Place const& place) {
        if (!std::filesystem::exists(FileIn(place))) {
            return;
        }
        Database database(FileIn(place), 0);
        Statement check(database, "PRAGMA integrity_check");
        ASSERT_TRUE(check.Step());
        EXPECT_EQ(check.Text(), "ok");
    }

    static std::string Both(int running, int stored) {
        return std::to_string(running) + " " + std::to_string(stored);
    }

    static int FromEnvironment(char const* name, int otherwise) {
        char const* const text = std::getenv(name);
        return text != nullptr ? std::stoi(text) : otherwise;
    }
};

enum class Store : int { WithoutFolder, New, Old, OpenElsewhere };

class PowerCutAtEachCall : public PowerCut,
                           public testing::WithParamInterface<std::tuple<Trouble, Store, Call>> {};

TEST_P(PowerCutAtEachCall, LeavesTheOldValuesOrTheNewOnes) {
    auto const [trouble, store, call] = GetParam();
    bool const isNew = store == Store::WithoutFolder || store == Store::New;
    int const old = isNew ? 0 : 3;
    int seen[] = {0, 0};  // old values, new ones
    for (bool isCut = true; isCut;) {
        int const allowed = seen[0] + seen[1];
        SCOPED_TRACE("behind " + std::to_string(allowed) + " calls");
        TempFolder const temp;
        Place const place = {temp.path,
                             temp.path + (store == Store::WithoutFolder ? "/not/there" : "")};
        SetStateFolder(place.state);
        if (!isNew) {
            ASSERT_EQ(ConfigUpdate("x=3"), 0);
        }
        isCut = Cut(place, trouble, allowed, call, 5, store == Store::OpenElsewhere);
        std::string const values = Values();
        bool const areNew = values == Both(5, call == Call::Update ? 5 : old);
        EXPECT_TRUE(areNew || values == Both(old, old)) << values;
        EXPECT_TRUE(areNew || isCut) << "the assignment was done";
        ExpectWhole(place);
        ++seen[areNew ? 1 : 0];
    }
    EXPECT_GT(seen[0], 3);
    EXPECT_GT(seen[1], 0);
}

INSTANTIATE_TEST_SUITE_P(Cuts, PowerCutAtEachCall,
                         testing::Combine(testing::Values(Trouble::Cut, Trouble::CutInTheMiddle,
                                                          Trouble::CutThatLoses),
                                          testing::Values(Store::WithoutFolder, Store::New,
                                                          Store::Old, Store::OpenElsewhere),
                                          testing::Values(Call::Update, Call::Set)));

TEST_F(PowerCut, LeavesTheOldValuesOrTheNewOnesWheneverItComes) {
    unsigned const seed = static_cast<unsigned>(
        FromEnvironment("QUILLO_POWER_CUT_SEED", static_cast<int>(std::random_device()() >> 1)));
    SCOPED_TRACE("QUILLO_POWER_CUT_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    Place const place = {folder.path, State()};
    int running = 0;
    int stored = 0;
    ASSERT_EQ(ConfigUpdate("x=0"), 0);
    for (int cuts = FromEnvironment("QUILLO_POWER_CUTS", 200); cuts > 0;) {
        int const value = static_cast<int>(random());
        auto const trouble = static_cast<Trouble>(static_cast<int>(Trouble::Cut) + random() % 3);
        auto const call = static_cast<Call>(random() % 2);
        bool const isCut =
            Cut(place, trouble, static_cast<int>(random() % 25), call, value, random() % 4 == 0);
        cuts -= isCut ? 1 : 0;
        std::string const values = Values();
        bool const areNew = values == Both(value, call == Call::Update ? value : stored);
        if (areNew) {
            running = value;
            stored = call == Call::Update ? value : stored;
        }
        EXPECT_TRUE(isCut || areNew) << "the assignment was done";
        ASSERT_EQ(values, Both(running, stored));
        ExpectWhole(place);
    }
}

}  // namespace
