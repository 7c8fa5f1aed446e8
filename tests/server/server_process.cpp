#include "server/server_process.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>

using QuilloServer::Descriptor;

namespace {

struct Pipe {
    Pipe() {
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe can be made");
        }
        readEnd = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
    }

    Descriptor readEnd;
    Descriptor writeEnd;
};

[[noreturn]] void Execute(std::vector<std::string> const& arguments,
                          std::vector<std::string> const& environment) {
    std::vector<char*> words;
    std::string program = QUILLO_TEST_SERVER;
    words.push_back(program.data());
    for (std::string const& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    for (std::string const& variable : environment) {
        putenv(const_cast<char*>(variable.c_str()));
    }
    execv(program.c_str(), words.data());
    _exit(127);
}

std::vector<std::string> With(std::vector<std::string> options, std::string const& listen,
                              std::string const& folder) {
    options.insert(options.begin(), {"--listen", listen, "--state-dir", folder + "/state"});
    return options;
}

}  // namespace

Program::Program(std::vector<std::string> const& arguments,
                 std::vector<std::string> const& environment) {
    Pipe output;
    Pipe errors;
    id_ = fork();
    if (id_ == 0) {
        dup2(output.writeEnd.Get(), STDOUT_FILENO);
        dup2(errors.writeEnd.Get(), STDERR_FILENO);
        Execute(arguments, environment);
    }
    output_ = std::move(output.readEnd);
    errors_ = std::move(errors.readEnd);
}

Program::~Program() {
    if (id_ > 0) {
        Signal(SIGTERM);
        Wait();
    }
}

void Program::Signal(int number) const {
    kill(id_, number);
}

int Program::Wait() {
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

std::string Program::ErrorLine(std::string const& text) const {
    std::string line;
    do {
        line = ReadLine(errors_);
    } while (!line.empty() && line.find(text) == std::string::npos);
    return line;
}

std::string Program::ReadAll(Descriptor const& end) {
    std::string all;
    for (std::string line = ReadLine(end); !line.empty(); line = ReadLine(end)) {
        all += line;
    }
    return all;
}

std::string Program::ReadLine(Descriptor const& end) {
    std::string line;
    char byte = 0;
    while (byte != '\n' && read(end.Get(), &byte, 1) == 1) {
        line += byte;
    }
    return line;
}

Server::Server(std::vector<std::string> const& options, std::string const& address)
    : program_(With(options, address + ":0", folder_.path)), address_(program_.OutputLine()) {
    std::size_t const colon = address_.rfind(':');
    if (address_.compare(0, 21, "quillo-serve: http://") != 0) {
        throw std::runtime_error("the server does not start: " + program_.Errors());
    }
    port_ = std::stoi(address_.substr(colon + 1));
}

int Server::Stop() {
    program_.Signal(SIGTERM);
    return program_.Wait();
}

Gate::Gate() {
    for (char const* name : {"/told", "/until"}) {
        if (mkfifo((folder_.path + name).c_str(), 0600) != 0) {
            throw std::runtime_error("no named pipe can be made");
        }
    }
}

std::string Gate::Arguments() const {
    return "gate=" + folder_.path;
}

// Both sides block until the other one is there.
void Gate::AwaitPage() {
    Descriptor const told(open((folder_.path + "/told").c_str(), O_RDONLY | O_CLOEXEC));
    held_ = Descriptor(open((folder_.path + "/until").c_str(), O_WRONLY | O_CLOEXEC));
}

void Gate::Open() {
    held_ = Descriptor();
}
