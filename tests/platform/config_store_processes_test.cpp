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
    for (std::string const& order : OrdersOf("PPPCCC")) {
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
                    stored = std::to_string(std::stoi(stored) + (who == 'P' ? 1 : 100));
                    EXPECT_EQ(line.Ask("update " + stored), "0");
                    break;
                case 1:
                    EXPECT_EQ(line.Ask("read"), stored);
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

}  // namespace
