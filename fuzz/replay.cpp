// A target without a fuzzer: tries its inputs one after the other.
//
//     fuzz-uri                 the words, some of the test data, 2,000 inputs made of them, and
//                              what the fuzzer found worth keeping so far
//     fuzz-uri FILE|FOLDER...  the inputs in files
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "inputs.hpp"
#include "oracle.hpp"

// Of the sanitizers' runtime, where it is linked.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostExternal = 2000;
constexpr int made = 2000;

char const tried[] = QUILLO_FUZZ_TARGET ".input";

int count = 0;

std::string const* input = nullptr;

// Leaves the input that ended the process in a file. Takes no memory: it may run in a signal.
void LeaveInput() {
    int const file = input != nullptr ? open(tried, O_WRONLY | O_CREAT | O_TRUNC, 0666) : -1;
    if (file >= 0 && write(file, input->data(), input->size()) >= 0) {
        char const message[] = "replay: the input that did it is left in " QUILLO_FUZZ_TARGET
                               ".input; the program tries it again when given that file\n";
        static_cast<void>(!write(STDERR_FILENO, message, sizeof message - 1));
    }
}

void LeaveInputAndDie(int signal) {
    LeaveInput();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// The sanitizers have words of their own to say before the process ends.
void WatchForDeath() {
    if (__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback(LeaveInput);
    } else {
        std::signal(SIGSEGV, LeaveInputAndDie);
        std::signal(SIGBUS, LeaveInputAndDie);
    }
    for (int const signal : {SIGABRT, SIGFPE, SIGILL, SIGTRAP}) {
        std::signal(signal, LeaveInputAndDie);
    }
}

void Try(std::string const& one) {
    input = &one;
    Check(one);
    input = nullptr;
    ++count;
}

void TryFile(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path.string() + " cannot be read");
    }
    Try(std::string(std::istreambuf_iterator<char>(file), {}));
}

void TryPath(fs::path const& path) {
    if (!fs::is_directory(path)) {
        TryFile(path);
        return;
    }
    for (fs::directory_entry const& entry : fs::directory_iterator(path)) {
        TryFile(entry.path());
    }
}

void TryAll() {
    auto const words = ReadWords(QUILLO_FUZZ_WORDS);
    auto const texts = SomeExternalTexts(mostExternal);
    Try("");
    for (std::string const& word : words) {
        Try(word);
    }
    for (std::string const& text : texts) {
        Try(text);
    }
    InputMaker maker(words, texts);
    for (int i = 0; i < made; ++i) {
        Try(maker.Next());
    }
    if (fs::is_directory(QUILLO_FUZZ_CORPUS)) {
        TryPath(QUILLO_FUZZ_CORPUS);
    }
}

}  // namespace

int main(int argc, char** argv) {
    WatchForDeath();
    try {
        for (int i = 1; i < argc; ++i) {
            TryPath(argv[i]);
        }
        if (argc == 1) {
            TryAll();
        }
    } catch (std::exception const& error) {
        std::fprintf(stderr, "fuzz-" QUILLO_FUZZ_TARGET ": %s\n", error.what());
        return 1;
    }
    std::printf("%d inputs passed\n", count);
    return 0;
}
