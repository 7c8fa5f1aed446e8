// Asks a server on this machine for one path again and again, over several connections at a time.
//
//     requests PORT PATH COUNT CONNECTIONS
//
// Prints how many answers came in a second, how many of them were not 200, and the times of the
// middle one, of the slowest in a hundred and of the slowest.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "connection.hpp"

namespace {

typedef std::chrono::steady_clock Clock;

double Milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

// The length of the whole answer that begins with `text`; 0 when that cannot be told yet.
std::size_t Length(std::string const& text) {
    std::size_t const end = text.find("\r\n\r\n");
    std::size_t const field = text.find("Content-Length: ");
    return end != std::string::npos ? end + 4 + std::stoul(text.substr(field + 16)) : 0;
}

// One of the connections: made anew when the server has ended it.
class Asker {
public:
    Asker(int port, std::string const& path)
        : port_(port), request_("GET " + path + " HTTP/1.1\r\nHost: localhost\r\n\r\n") {}
    Asker(Asker const&) = delete;
    Asker& operator=(Asker const&) = delete;
    ~Asker() { close(client_); }

    bool Ask() {
        client_ = client_ < 0 ? Connected(port_) : client_;
        send(client_, request_.data(), request_.size(), MSG_NOSIGNAL);
        std::string text;
        char bytes[65536];
        std::size_t length = 0;
        while (length == 0 || text.size() < length) {
            ssize_t const count = recv(client_, bytes, sizeof bytes, 0);
            if (count <= 0) {
                break;
            }
            text.append(bytes, static_cast<std::size_t>(count));
            length = length == 0 ? Length(text) : length;
        }
        if (text.find("Connection: close") != std::string::npos || text.empty()) {
            close(client_);
            client_ = -1;
        }
        return text.compare(0, 12, "HTTP/1.1 200") == 0 && text.size() == length;
    }

private:
    int const port_;
    std::string const request_;
    int client_ = -1;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: requests PORT PATH COUNT CONNECTIONS\n", stderr);
        return 2;
    }
    int const port = std::atoi(argv[1]);
    auto const count = static_cast<std::size_t>(std::atol(argv[3]));
    std::vector<double> times(count);
    std::atomic<std::size_t> next = 0;
    std::atomic<long> failures = 0;
    Clock::time_point const begin = Clock::now();
    std::vector<std::thread> threads;
    for (int i = 0; i < std::atoi(argv[4]); ++i) {
        threads.emplace_back([&] {
            Asker asker(port, argv[2]);
            for (std::size_t mine = next++; mine < count; mine = next++) {
                Clock::time_point const asked = Clock::now();
                failures += asker.Ask() ? 0 : 1;
                times[mine] = Milliseconds(Clock::now() - asked);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    double const seconds = Milliseconds(Clock::now() - begin) / 1000;
    std::sort(times.begin(), times.end());
    std::printf(
        "%.0f/s, %ld failed, middle %.2f ms, slowest in a hundred %.2f ms, slowest %.2f ms\n",
        static_cast<double>(count) / seconds, failures.load(), times[count / 2],
        times[count * 99 / 100], times.back());
    return failures.load() == 0 ? 0 : 1;
}
