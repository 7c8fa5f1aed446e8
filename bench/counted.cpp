// Work whose instructions are counted: `counted WORK TIMES` does it so many times, and prints how
// many units it has. What one time takes is the difference between two counts, in which the start
// of the program and what is done once cancel out.
//
//     whole     a page built, written to memory and destroyed; a unit is a node
//     write     a page written to memory; a unit is a node
//     filter    Filter on 4 KiB with 2 special characters in a hundred; a unit is a byte
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "page/quillo_tree.hpp"

using namespace Bench;

namespace {

constexpr int rows = 100;

// Elements and texts.
std::size_t CountNodes(Quillo::ElementImpl const& element) {
    std::size_t count = 1;
    for (boost::shared_ptr<Quillo::ElementImpl> const& child : element.children) {
        count += CountNodes(*child);
    }
    return count;
}

std::size_t Whole(long times) {
    PageData const data = MakePageData(rows);
    std::string text;
    for (long i = 0; i < times; ++i) {
        text.clear();
        AppendTree(MakeTree(data), text);
    }
    return CountNodes(*MakeTree(data).impl);
}

std::size_t Write(long times) {
    Quillo::Element const tree = MakeTree(MakePageData(rows));
    std::string text;
    for (long i = 0; i < times; ++i) {
        text.clear();
        AppendTree(tree, text);
    }
    return CountNodes(*tree.impl);
}

std::size_t Filter(long times) {
    std::string text(4096, 'a');
    for (std::size_t i = 0; i < text.size(); i += 50) {
        text[i] = "<>&\""[i / 50 % 4];
    }
    for (long i = 0; i < times; ++i) {
        text.back() = Quillo::Filter(text).back();
    }
    return text.size();
}

struct Work {
    char const* name;
    std::size_t (*run)(long times);
};

Work const works[] = {{"whole", Whole}, {"write", Write}, {"filter", Filter}};

}  // namespace

int main(int argc, char** argv) {
    for (Work const& work : works) {
        if (argc == 3 && std::strcmp(argv[1], work.name) == 0) {
            std::printf("%zu\n", work.run(std::strtol(argv[2], nullptr, 10)));
            return 0;
        }
    }
    std::fprintf(stderr, "usage: counted whole|write|filter TIMES\n");
    return 2;
}
