// Clients that send and read a byte a second, while a command runs.
//
//     slow-clients PORT COUNT PATH COMMAND...
//
// COUNT of them send a header, as many a form, as many read the page at PATH. One whose connection
// the server has ended begins again. Ends with the command, and with its exit code.
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "connection.hpp"

namespace {

// Of the kinds of slow clients: what they send at once, and whether they then read.
struct Kind {
    std::string begin;
    bool isReader;
};

class SlowClient {
public:
    SlowClient(int port, Kind const& kind) : port_(port), kind_(kind) { Begin(); }
    SlowClient(SlowClient const&) = delete;
    SlowClient(SlowClient&& other) noexcept
        : port_(other.port_), kind_(other.kind_), socket_(other.socket_) {
        other.socket_ = -1;
    }
    ~SlowClient() { close(socket_); }

    void GoOn() {
        char byte = 'a';
        ssize_t const count = kind_.isReader ? recv(socket_, &byte, 1, MSG_DONTWAIT)
                                             : send(socket_, &byte, 1, MSG_NOSIGNAL);
        bool const isWaiting = count < 0 && errno == EAGAIN;
        if (count != 1 && !isWaiting) {
            close(socket_);
            Begin();
        }
    }

private:
    void Begin() {
        socket_ = Connected(port_, kind_.isReader ? 4096 : 0);
        send(socket_, kind_.begin.data(), kind_.begin.size(), MSG_NOSIGNAL);
    }

    int port_;
    Kind const& kind_;
    int socket_ = -1;
};

pid_t Start(char** command) {
    pid_t const child = fork();
    if (child == 0) {
        execv(command[0], command);
        std::perror(command[0]);
        _exit(127);
    }
    return child;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fputs("usage: slow-clients PORT COUNT PATH COMMAND...\n", stderr);
        return 2;
    }
    std::string const head = " HTTP/1.1\r\nHost: localhost\r\n";
    std::vector<Kind> const kinds = {
        {"GET / HTTP/1.1\r\nX: ", false},
        {"POST /settings" + head + "Content-Length: 60000\r\n\r\n", false},
        {std::string("GET ") + argv[3] + head + "\r\n", true}};
    std::vector<SlowClient> clients;
    for (Kind const& kind : kinds) {
        for (int i = 0; i < std::atoi(argv[2]); ++i) {
            clients.emplace_back(std::atoi(argv[1]), kind);
        }
    }
    pid_t const child = Start(argv + 4);
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        for (SlowClient& client : clients) {
            client.GoOn();
        }
        sleep(1);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
