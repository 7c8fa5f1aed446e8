// The page server with pages that do what a page should not, and pages that show what they are
// given.
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <page.hpp>
#include <serve.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace Quillo;
using QuilloServer::Page;
using QuilloServer::Request;

namespace {

std::string Argument(Request const& request, std::string const& name) {
    auto const found = request.arguments.find(name);
    return found != request.arguments.end() ? found->second : "";
}

void WriteMap(std::ostream& out, char const* title, UriArgs const& map) {
    for (auto const& [name, value] : map) {
        out << title << " " << name << "=" << value << "\n";
    }
}

// The first page: everything that the request offers, a line each.
void WriteEcho(Request& request, std::ostream& out) {
    out << "method " << request.method << "\n";
    out << "record language " << request.app.preferredLang << "\n";
    out << "record arguments " << Cstr(request.app.uriArgs) << "\n";
    out << "language " << g_language << "\n";
    WriteMap(out, "argument", request.arguments);
    WriteMap(out, "field", request.form);
    WriteMap(out, "cookie", request.cookies);
    out << "translated " << TranslatePhrase(request.app, "Storage", LoaContext_None) << "\n";
}

void WriteForm(Request& request, std::ostream& out) {
    Element form(boost::shared_ptr<ElementImpl>(new ElementImpl("form", false)));
    form.SetAttr("name", "change").SetAttr("method", "post");
    Element field(boost::shared_ptr<ElementImpl>(new ElementImpl("input", true)));
    field.SetAttr("name", "volume").SetFocus();
    form << QuilloServer::TokenField(request) << field;
    Renderer r(out);
    form.impl->Render(r, 0);
}

void WriteReports(Request&, std::ostream& out) {
    Filter("\x01");
    Renderer r(out);
    debugMsgs.impl->Render(r, 0);
}

void WriteProcess(Request&, std::ostream& out) {
    out << getpid();
}

// Asks the device for the object that is named, and for one that it does not have.
void WriteObject(Request& request, std::ostream& out) {
    std::vector<std::vector<std::string>> rows;
    GetObject(request.app, ObjectType_Sys, "nothing", {"name"}, rows);
    GetObject(request.app, ObjectType_Sys, Argument(request, "object"), {"hostname"}, rows);
    out << rows.size();
}

void WriteMuch(Request& request, std::ostream& out) {
    out << std::string(std::stoul(Argument(request, "bytes")), 'x');
}

void WriteAnswer(Request& request, std::ostream& out) {
    request.status = 404;
    request.newCookies["LANGUAGE"] = "de de";
    request.newCookies["old"] = "";
    out << "not here";
}

void WriteRedirect(Request& request, std::ostream& out) {
    request.redirect = Argument(request, "to");
    out << "never seen";
}

QuilloServer::Setting const lasting("lasting", "FALSE");

// Stores a value, and shows what is stored: "0 TRUE", where 0 says that it could be stored.
void WriteSetting(Request& request, std::ostream& out) {
    std::string const value = Argument(request, "value");
    int const result = value.empty() ? 0 : PutPersistentConfig(lasting.name, value == "TRUE");
    bool isTrue = false;
    int const readResult = GetConfig(lasting.name.c_str(), isTrue);
    out << result + readResult << (isTrue ? " TRUE" : " FALSE");
}

// Says that it waits, and waits until the other end is closed.
void WriteAfterWaiting(Request& request, std::ostream& out) {
    std::string const gate = Argument(request, "gate");
    close(open((gate + "/told").c_str(), O_WRONLY | O_CLOEXEC));
    int const until = open((gate + "/until").c_str(), O_RDONLY | O_CLOEXEC);
    char byte = 0;
    while (read(until, &byte, 1) > 0) {
    }
    close(until);
    out << "waited";
    if (Argument(request, "then") == "abort") {
        std::abort();
    }
    for (bool value = true; Argument(request, "then") == "store"; value = !value) {
        PutPersistentConfig(lasting.name, value);
    }
}

void ThrowError(Request&, std::ostream& out) {
    out << "half a page";
    throw std::runtime_error("the reason that is for the log");
}

void BreakStream(Request&, std::ostream& out) {
    out << "half a page";
    out.setstate(std::ios::badbit);
}

void ThrowNumber(Request&, std::ostream&) {
    throw 42;
}

void Abort(Request&, std::ostream&) {
    std::abort();
}

void Exit(Request&, std::ostream&) {
    _exit(3);
}

void Loop(Request&, std::ostream&) {
    for (volatile bool goesOn = true; goesOn;) {
    }
}

Page const echo("echo", "Echo", 1, WriteEcho);
Page const form("form", "Form", 2, WriteForm);
Page const reports("reports", "Reports", 3, WriteReports);
Page const process("process", "Process", 4, WriteProcess);
Page const much("much", "Much", 5, WriteMuch);
Page const answer("answer", "Answer", 6, WriteAnswer);
Page const redirect("redirect", "Redirect", 7, WriteRedirect);
Page const wait("wait", "Wait", 8, WriteAfterWaiting);
Page const throwing("throw", "Throw", 9, ThrowError);
Page const throwingNumber("throw-number", "Throw", 10, ThrowNumber);
Page const breaking("break", "Break", 14, BreakStream);
Page const aborting("abort", "Abort", 11, Abort);
Page const exiting("exit", "Exit", 12, Exit);
Page const looping("loop", "Loop", 13, Loop);
Page const setting("setting", "Setting", 16, WriteSetting);
Page const object("object", "Object", 15, WriteObject);

QuilloServer::StaticFile const sheet("/style.css", "text/css; charset=utf-8", "p { margin: 0 }\n");

}  // namespace

int main(int argc, char** argv) {
    return QuilloServer::Serve(argc, argv);
}
