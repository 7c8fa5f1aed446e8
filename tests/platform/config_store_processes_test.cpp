// The configuration store, used by several processes in every order.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/store_fixture.hpp"
#include "platform/store_process.hpp"

namespace {

using StoreOfProcesses = StoreFixture;

// The permutations of the letters: each is the order in which a parent, P, and its child, C, take
// their next steps.
std::vector<std::string> OrdersOf(std::string order) {
    std::vector<std::string> orders;
    std::sort(order.begin(), order.end());
    do {
        orders.push_back(order);
    } while (std::next_permutation(order.begin(), order.end()));
    return orders;
}

TEST_F(StoreOfProcesses, AnUpdateHoldsWhoeverOfAForkedPairMadeItAndWhoeverEndsFirst) {
    QuilloHost::SetStorePatience(2000);
    for (std::string const& order : OrdersOf("PPPPCCCC")) {
        SCOPED_TRACE(order);
        TempFolder const fresh;
        QuilloHost::SetStateFolder(fresh.path);
        std::string stored = "0";
        // This process must hold no connection of its own while the others work.
        std::optional<StoreProcesses> processes(std::in_place);
        EXPECT_EQ(processes->parent.Ask("read"), stored);
        EXPECT_EQ(processes->parent.Ask("fork"), "0");
        std::size_t steps[] = {0, 0};
        for (char const who : order) {
            Line const& line = who == 'P' ? processes->parent : processes->child;
            switch (steps[who == 'P']++) {
                case 0:
                case 2:
                    EXPECT_EQ(line.Ask("read"), stored);
                    break;
                case 1:
                    stored = std::to_string(std::stoi(stored) + (who == 'P' ? 1 : 100));
                    EXPECT_EQ(line.Ask("update " + stored), "0");
                    break;
                default:
                    line.Ask("exit");
            }
        }
        processes.reset();
        EXPECT_EQ(std::to_string(Read("x")), stored);
    }
}

// The store is not even there when they begin.
TEST_F(StoreOfProcesses, ProcessesThatBeginAtOnceLoseNoUpdate) {
    QuilloHost::SetStorePatience(60000);
    std::vector<std::string> const names = {"a", "b", "c", "d", "e", "f"};
    int start[2];
    ASSERT_EQ(pipe(start), 0);
    std::vector<pid_t> children;
    for (std::string const& name : names) {
        QuilloHost::DeclareSetting(name, "0");
        children.push_back(fork());
        if (children.back() == 0) {
            close(start[1]);
            char byte = '\0';
            ssize_t const none = read(start[0], &byte, 1);
            int value = 0;
            long status = none;
            for (int number = 1; number <= 10; ++number) {
                status |= ConfigUpdate((name + "=" + std::to_string(number)).c_str());
                status |= Cfg_GetBoolAttrValue(name.c_str(), &value);
                status |= value ^ number;
            }
            _exit(status == 0 ? 0 : 1);
        }
    }
    close(start[0]);
    close(start[1]);
    for (pid_t const child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    for (std::string const& name : names) {
        EXPECT_EQ(Read(name.c_str()), 10) << name;
    }
}

// What one of the processes A and B, or A's child a, is told, and what it answers.
struct Step {
    char who;
    std::string command;
    std::string answer;
};

struct Row {
    char const* rule;
    std::vector<Step> steps;
};

Row const rows[] = {
    {"a setting has its default", {{'A', "read", "0"}, {'B', "read", "0"}}},
    {"a running value is everyone's",
     {{'A', "set 7", "0"},
      {'A', "read", "7"},
      {'B', "read", "7"},
      {'A', "fork", "0"},
      {'a', "read", "7"}}},
    {"the last one that is set holds",
     {{'A', "set 7", "0"}, {'B', "set 8", "0"}, {'A', "read", "8"}, {'B', "read", "8"}}},
    {"a running value outlives its process",
     {{'A', "set 7", "0"}, {'A', "exit", ""}, {'B', "read", "7"}}},
    {"a running value is gone with the run",
     {{'A', "set 7", "0"},
      {'A', "run second", "0"},
      {'A', "read", "0"},
      {'B', "run second", "0"},
      {'B', "read", "0"}}},
    {"a running value is gone for good",
     {{'A', "set 7", "0"},
      {'B', "run second", "0"},
      {'B', "set 8", "0"},
      {'B', "run third", "0"},
      {'B', "read", "0"},
      {'A', "run second", "0"},
      {'A', "read", "8"}}},
    {"a stored value is everyone's, in every run",
     {{'A', "update 7", "0"},
      {'A', "read", "7"},
      {'B', "read", "7"},
      {'B', "run second", "0"},
      {'B', "read", "7"},
      {'A', "fork", "0"},
      {'a', "run third", "0"},
      {'a', "read", "7"}}},
    {"an update covers the running value",
     {{'A', "set 7", "0"},
      {'B', "update 8", "0"},
      {'A', "read", "8"},
      {'A', "run second", "0"},
      {'A', "read", "8"}}},
    {"a running value covers the stored one for a run",
     {{'A', "update 7", "0"},
      {'B', "set 8", "0"},
      {'A', "read", "8"},
      {'A', "run second", "0"},
      {'A', "read", "7"}}},
    {"a running value covers the stored one in a later run, too",
     {{'A', "update 7", "0"},
      {'A', "run second", "0"},
      {'A', "set 8", "0"},
      {'A', "read", "8"},
      {'A', "run third", "0"},
      {'A', "read", "7"}}},
    {"words are values like numbers",
     {{'A', "update TRUE", "0"},
      {'B', "read", "1"},
      {'B', "set FALSE", "0"},
      {'A', "read", "0"},
      {'A', "run second", "0"},
      {'A', "read", "1"}}},
    {"what is refused changes nothing",
     {{'A', "update 7", "0"},
      {'B', "set 8", "0"},
      {'A', "update 9\n", "1"},
      {'A', "set 9\n", "1"},
      {'A', "read", "8"},
      {'B', "run second", "0"},
      {'B', "read", "7"}}}};

TEST_F(StoreOfProcesses, ReadWhatEachOtherStoredAndSet) {
    QuilloHost::SetStorePatience(2000);
    for (Row const& row : rows) {
        SCOPED_TRACE(row.rule);
        TempFolder const fresh;
        QuilloHost::SetStateFolder(fresh.path);
        StoreProcesses a;
        StoreProcesses b;
        for (Step const& step : row.steps) {
            Line const& line = step.who == 'B' ? b.parent : step.who == 'A' ? a.parent : a.child;
            EXPECT_EQ(line.Ask(step.command), step.answer) << step.who << ' ' << step.command;
        }
    }
}

}  // namespace
