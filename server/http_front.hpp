// HTTP on connections that are handed in one by one: libmicrohttpd reads the request, the site
// answers it, libmicrohttpd sends the answer for as long as its reader takes.
#ifndef QUILLO_SERVER_HTTP_FRONT_HPP
#define QUILLO_SERVER_HTTP_FRONT_HPP

#include <microhttpd.h>

#include <memory>

#include "site.hpp"

namespace QuilloServer {

class HttpFront {
public:
    // Throws std::runtime_error when it cannot be started. To be made in the process that uses it.
    explicit HttpFront(Site const& site);

    // Serves `socket`, and closes it in the end.
    void Add(int socket);

    // Goes on with whatever can go on. Never waits.
    void Run();

    // Whether there is something to go on with.
    bool CanRun() const;

    // Readable when there is something to go on with.
    int Descriptor() const;

    // How many milliseconds from now there is something to go on with even so; -1: never.
    int Timeout() const;

    // Whether a request was added and is not answered yet.
    bool IsAnswering() const { return unanswered_ > 0; }

    // Whether there is any connection left.
    bool IsBusy() const { return connections_ > 0; }

    // How many requests were answered.
    unsigned long Answered() const { return answered_; }

private:
    struct Exchange;
    struct Standing;

    static void* Begin(void* front, char const* target, MHD_Connection* connection);
    static MHD_Result Handle(void* front, MHD_Connection* connection, char const* url,
                             char const* method, char const* version, char const* data,
                             std::size_t* size, void** exchange);
    static void Complete(void* front, MHD_Connection* connection, void** exchange,
                         MHD_RequestTerminationCode code);
    static void Notify(void* front, MHD_Connection* connection, void** context,
                       MHD_ConnectionNotificationCode code);

    MHD_Result AnswerTo(MHD_Connection* connection, Exchange& exchange);
    void CountAnswered(MHD_Connection* connection);

    struct Stop {
        void operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }
    };

    Site const& site_;
    int connections_ = 0;
    int unanswered_ = 0;
    unsigned long answered_ = 0;
    std::unique_ptr<MHD_Daemon, Stop> daemon_;  // ended first: it calls back while it ends
};

}  // namespace QuilloServer

#endif
