// The server as a process of its own, with the pages of test_server.cpp.
#ifndef QUILLO_TESTS_SERVER_SERVER_PROCESS_HPP
#define QUILLO_TESTS_SERVER_SERVER_PROCESS_HPP

#include <sys/types.h>

#include <descriptor.hpp>
#include <string>
#include <vector>

#include "platform/temp_folder.hpp"

// A program that was started, with its standard output and standard error in pipes.
class Program {
public:
    // Runs QUILLO_TEST_SERVER. `environment` is NAME=VALUE, beside that of this process.
    explicit Program(std::vector<std::string> const& arguments,
                     std::vector<std::string> const& environment = {});
    Program(Program const&) = delete;
    Program& operator=(Program const&) = delete;
    ~Program();

    pid_t Id() const { return id_; }
    void Signal(int number) const;
    // The exit code once it has ended; 1000 and the signal's number if one ended it.
    int Wait();
    // What it writes until it ends, or the next line.
    std::string Output() const { return ReadAll(output_); }
    std::string Errors() const { return ReadAll(errors_); }
    std::string OutputLine() const { return ReadLine(output_); }
    // The next line on standard error that holds `text`; empty when it ends without one.
    std::string ErrorLine(std::string const& text) const;

private:
    static std::string ReadAll(QuilloServer::Descriptor const& end);
    static std::string ReadLine(QuilloServer::Descriptor const& end);

    QuilloServer::Descriptor output_;
    QuilloServer::Descriptor errors_;
    pid_t id_ = 0;
};

// A server that serves, on a port of its own and with a state folder of its own.
class Server {
public:
    explicit Server(std::vector<std::string> const& options = {},
                    std::string const& address = "127.0.0.1");

    int Port() const { return port_; }
    std::string const& Address() const { return address_; }  // as it was printed
    Program& Process() { return program_; }
    std::string const& Folder() const { return folder_.path; }

    // Lets it end what it does, and returns its exit code.
    int Stop();

private:
    TempFolder folder_;
    Program program_;
    std::string address_;
    int port_;
};

// A named pipe that a page waits at.
class Gate {
public:
    Gate();

    // The arguments that let the page "wait" wait here.
    std::string Arguments() const;
    // Returns when a page waits.
    void AwaitPage();
    // Lets it go on.
    void Open();

private:
    TempFolder folder_;
    QuilloServer::Descriptor held_;
};

#endif
