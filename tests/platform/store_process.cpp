#include "platform/store_process.hpp"

#include <config_store.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "host/host.hpp"

namespace {

void Close(int& end) {
    if (end >= 0) {
        close(end);
    }
    end = -1;
}

std::string Done(std::string const& verb, std::string const& argument) {
    int value = 0;
    if (verb == "read") {
        return Cfg_GetBoolAttrValue("x", &value) == 0 ? std::to_string(value) : "failed";
    }
    if (verb == "set") {
        return std::to_string(Cfg_SetAttrValue("x", argument.c_str()));
    }
    if (verb == "update") {
        return std::to_string(ConfigUpdate(("x=" + argument).c_str()));
    }
    QuilloHost::SetServiceRun(argument);
    return "0";
}

}  // namespace

Line::Line() {
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends_) != 0) {
        std::abort();
    }
}

Line::~Line() {
    Leave();
}

std::string Line::Ask(std::string const& command) const {
    send(ends_[0], command.data(), command.size(), MSG_NOSIGNAL);
    return Receive(ends_[0]);
}

void Line::Obey(Line* next) {
    Close(ends_[0]);
    for (std::string order = Receive(ends_[1]); order != "exit" && !order.empty();
         order = Receive(ends_[1])) {
        std::size_t const verbEnd = std::min(order.find(' '), order.size() - 1);
        std::string answer = "0";
        if (order != "fork") {
            answer = Done(order.substr(0, order.find(' ')), order.substr(verbEnd + 1));
        } else if (fork() == 0) {
            Leave();
            next->Obey(nullptr);
        } else {
            next->Leave();
        }
        send(ends_[1], answer.data(), answer.size(), MSG_NOSIGNAL);
    }
    std::exit(0);  // gives up what the store holds
}

void Line::LeaveToProcess() {
    Close(ends_[1]);
}

void Line::Leave() {
    Close(ends_[0]);
    Close(ends_[1]);
}

std::string Line::Receive(int end) const {
    char bytes[512];
    ssize_t const count = recv(end, bytes, sizeof bytes, 0);
    return std::string(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
}

StoreProcesses::StoreProcesses() {
    std::fflush(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
        parent.Obey(&child);
    }
    parent.LeaveToProcess();
    child.LeaveToProcess();
}

StoreProcesses::~StoreProcesses() {
    parent.Ask("exit");
    int status = -1;
    waitpid(pid_, &status, 0);
    EXPECT_EQ(status, 0);
    child.Ask("exit");
}
