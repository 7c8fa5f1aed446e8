// A small HTTP client that waits for whatever the server does next.
#ifndef QUILLO_TESTS_SERVER_HTTP_CLIENT_HPP
#define QUILLO_TESTS_SERVER_HTTP_CLIENT_HPP

#include <descriptor.hpp>
#include <string>

// An answer, taken apart.
struct Reply {
    std::string text;  // all of it, as it came
    int status = 0;    // 0: the connection ended without an answer
    std::string head;  // the first line and the header, without the empty line
    std::string body;

    // The value of the field `name`; of several the first. Empty when there is none.
    std::string Header(std::string const& name) const;
    // Whether the field is there at all.
    bool Has(std::string const& name) const;
};

Reply ParseReply(std::string const& text);

// A connection to a port of this machine.
class Client {
public:
    explicit Client(int port, bool isIpv6 = false);

    // False when the server has ended the connection.
    bool Send(std::string const& bytes) const;
    // Says that no more will be sent.
    void EndSending() const;
    // What comes up to and with `mark`, or up to the end of the connection.
    std::string ReadUntil(std::string const& mark) const;
    // What comes until the connection ends.
    std::string ReadAll() const;
    Reply Read() const { return ParseReply(ReadAll()); }

private:
    QuilloServer::Descriptor socket_;
};

// A connection that has only been asked for.
class LateClient {
public:
    explicit LateClient(int port);

    // What became of it: 0, or the error's number.
    int Outcome() const;

private:
    QuilloServer::Descriptor socket_;
};

// The head of a request for `path`, with the field Host and `fields`, each with its line end.
std::string RequestText(std::string const& path, std::string const& fields = "",
                        std::string const& method = "GET");

// A request on a connection of its own, and its answer.
Reply Ask(int port, std::string const& request);
Reply Get(int port, std::string const& path, std::string const& fields = "");

// A form that is sent.
std::string FormText(std::string const& path, std::string const& body,
                     std::string const& fields = "");

#endif
