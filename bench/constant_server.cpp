// A server that answers every request with the same bytes, through libmicrohttpd and nothing else:
// what quillo-serve is measured beside.
//
//     constant-server BYTES close|keep
//
// Prints its port, and serves until it is killed. "close" ends each connection with its answer, as
// quillo-serve does.
#include <microhttpd.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace {

MHD_Response* response = nullptr;

MHD_Result Answer(void*, MHD_Connection* connection, char const*, char const*, char const*,
                  char const*, std::size_t*, void**) {
    return MHD_queue_response(connection, MHD_HTTP_OK, response);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: constant-server BYTES close|keep\n", stderr);
        return 2;
    }
    std::string body(std::stoul(argv[1]), 'x');
    response = MHD_create_response_from_buffer(body.size(), body.data(), MHD_RESPMEM_PERSISTENT);
    if (std::string(argv[2]) == "close") {
        MHD_add_response_header(response, "Connection", "close");
    }
    MHD_Daemon* const daemon = MHD_start_daemon(MHD_USE_EPOLL_INTERNAL_THREAD, 0, nullptr, nullptr,
                                                Answer, nullptr, MHD_OPTION_END);
    if (daemon == nullptr) {
        std::perror("constant-server");
        return 1;
    }
    std::printf("%u\n", unsigned{MHD_get_daemon_info(daemon, MHD_DAEMON_INFO_BIND_PORT)->port});
    std::fflush(stdout);
    pause();
}
