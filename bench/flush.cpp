// The finished page's tree, written to where a page author may want it: "flush/WHERE/CONTENDER".
// Every line end of a page flushes the stream, so what a line costs depends on the stream.
//
//     quillo        the tree, rendered to the stream
//     line floor    the page's bytes, one write and one flush a line
//     via memory    the tree, rendered to a string, which is written and flushed at once
//     page floor    the page's bytes, one write and one flush
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <thread>

#include "page/quillo_tree.hpp"
#include "page/string_buffer.hpp"

using namespace Bench;

namespace {

constexpr int rows = 100;

// A stream that writes do not fill: each page begins where the last one began, or is drained.
class Target {
public:
    virtual ~Target() = default;
    virtual std::ostream& Begin() = 0;
};

class FileTarget : public Target {
public:
    FileTarget() : stream_(path) { std::remove(path); }
    std::ostream& Begin() override { return stream_.seekp(0); }

private:
    static constexpr char const* path = "flush.html";
    std::ofstream stream_;
};

// A thread reads what is written.
class PipeTarget : public Target {
public:
    PipeTarget() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            std::perror("flush: no pipe");
            std::exit(1);
        }
        stream_.open("/dev/fd/" + std::to_string(ends[1]));
        close(ends[1]);
        reader_ = std::thread([end = ends[0]] {
            char buffer[65536];
            while (read(end, buffer, sizeof buffer) > 0) {
            }
            close(end);
        });
    }
    ~PipeTarget() override {
        stream_.close();
        reader_.join();
    }
    std::ostream& Begin() override { return stream_; }

private:
    std::ofstream stream_;
    std::thread reader_;
};

// Memory: there is nothing to flush.
class MemoryTarget : public Target {
public:
    std::ostream& Begin() override {
        text_.clear();
        return stream_;
    }

private:
    std::string text_;
    StringBuffer buffer_{text_};
    std::ostream stream_{&buffer_};
};

struct FinishedPage {
    Quillo::Element tree = MakeTree(MakePageData(rows));
    std::string text = [this] {
        std::string rendered;
        AppendTree(tree, rendered);
        return rendered;
    }();
};

void RenderTree(FinishedPage const& page, std::ostream& out) {
    Quillo::Renderer renderer(out);
    page.tree.impl->Render(renderer, 0);
}

void WriteLines(FinishedPage const& page, std::ostream& out) {
    std::string const& text = page.text;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t const end = text.find('\n', begin) + 1;
        out.write(text.data() + begin, static_cast<std::streamsize>(end - begin)).flush();
        begin = end;
    }
}

void WriteAtOnce(std::string const& text, std::ostream& out) {
    out.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
}

void RenderViaMemory(FinishedPage const& page, std::ostream& out) {
    std::string text;
    AppendTree(page.tree, text);
    WriteAtOnce(text, out);
}

void WritePage(FinishedPage const& page, std::ostream& out) {
    WriteAtOnce(page.text, out);
}

template <class T>
void Register(char const* where, FinishedPage const& page, char const* contender,
              void (*write)(FinishedPage const&, std::ostream&)) {
    std::string const name = std::string("flush/") + where + "/" + contender;
    benchmark::RegisterBenchmark(name.c_str(), [&page, write](benchmark::State& state) {
        T target;
        for (auto _ : state) {
            write(page, target.Begin());
        }
        if (!target.Begin()) {
            state.SkipWithError("the stream failed");
        }
    });
}

template <class T>
void RegisterAll(char const* where, FinishedPage const& page) {
    Register<T>(where, page, "quillo", RenderTree);
    Register<T>(where, page, "line floor", WriteLines);
    Register<T>(where, page, "via memory", RenderViaMemory);
    Register<T>(where, page, "page floor", WritePage);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    FinishedPage const page;
    RegisterAll<FileTarget>("file", page);
    RegisterAll<PipeTarget>("pipe", page);
    RegisterAll<MemoryTarget>("memory", page);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
