// The host's answers to requests of any form, about an object of any content.
#include <zov_appdata.h>

#include <algorithm>
#include <optional>

#include "feed.hpp"
#include "host/attribute_service.hpp"
#include "host/format_line.hpp"
#include "host_log.hpp"
#include "oracle.hpp"

using namespace QuilloHost;

namespace {

typedef std::vector<std::string> Texts;

// The object of the one provider.
std::optional<Table> object;

std::optional<Table> ReadObject() {
    return object;
}

Provider const providers[] = {{"object", ReadObject}};

Texts Names(std::string const& line) {
    Texts names = {""};
    for (char const c : line) {
        if (c == ' ') {
            names.emplace_back();
        } else {
            names.back() += c;
        }
    }
    return names;
}

std::string Blanked(std::string text) {
    for (char& c : text) {
        unsigned const byte = static_cast<unsigned char>(c);
        c = byte < 0x20 || byte == 0x7F ? ' ' : c;
    }
    return text;
}

// The value of the attribute at the position that `digits` say, if there is one.
Value ValueOf(Record const& record, Texts const& names, std::string digits) {
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    if (digits.empty() || digits.size() > 4 || std::stoul(digits) > names.size()) {
        return std::nullopt;
    }
    std::string const& name = names[std::stoul(digits) - 1];
    for (std::size_t i = 0; i < object->columns.size(); ++i) {
        if (object->columns[i] == name) {
            return record[i];
        }
    }
    return std::nullopt;
}

std::string Line(std::string const& format, Record const& record, Texts const& names,
                 std::string const& fallback) {
    std::string line;
    std::string digits;
    bool isOpen = false;
    // The bytes of the format, and one that ends what is open.
    for (std::size_t at = 0; at <= format.size(); ++at) {
        char const c = at < format.size() ? format[at] : '\0';
        if (isOpen && c >= '0' && c <= '9') {
            digits += c;
            continue;
        }
        if (isOpen) {
            line +=
                digits.empty() ? "%" : Blanked(ValueOf(record, names, digits).value_or(fallback));
        }
        isOpen = c == '%';
        digits.clear();
        line += isOpen || at == format.size() ? "" : std::string(1, c);
    }
    return line;
}

std::string ByTheRules(RequestState const& state) {
    std::string const fallback = state.defaultValue.value_or("");
    if (state.object != "object" || !object) {
        return fallback;
    }
    std::string answer;
    for (Record const& record : object->records) {
        answer +=
            Line(state.format.value_or(""), record, Names(state.attrs.value_or("")), fallback);
    }
    return answer;
}

Value MaybeText(Feed& feed) {
    bool const isThere = feed.Below(8) != 7;
    return isThere ? Value(feed.Text()) : std::nullopt;
}

std::optional<Table> MakeTable(Feed& feed) {
    unsigned const columns = feed.Below(5);
    if (columns == 4) {
        return std::nullopt;
    }
    Table table;
    for (unsigned i = 0; i < columns; ++i) {
        table.columns.push_back(feed.Text());
    }
    for (unsigned left = feed.Below(4); left > 0; --left) {
        table.records.emplace_back();
        for (unsigned i = 0; i < columns; ++i) {
            table.records.back().push_back(MaybeText(feed));
        }
    }
    return table;
}

char const* TextOf(Value const& text) {
    return text ? text->c_str() : nullptr;
}

// Up to the first NUL, as the contract's functions take a text.
Value Cut(Value const& text) {
    return text ? Value(text->c_str()) : std::nullopt;
}

RequestState MakeRequest(Feed& feed) {
    RequestState state;
    state.object = feed.Below(8) != 7 ? Value("object") : Cut(MaybeText(feed));
    state.format = Cut(MaybeText(feed));
    state.attrs = Cut(MaybeText(feed));
    state.defaultValue = Cut(MaybeText(feed));
    return state;
}

// The request by the calls of the contract, answered on a stream.
void CheckCalls(RequestState const& asked, std::string const& answer) {
    ZOV_AppData app = {};
    char* text = nullptr;
    std::size_t size = 0;
    ExpectEqual(loareq_initialize(&app), 0, "loareq_initialize: 0 says it is done");
    loareq_set_object(&app, TextOf(asked.object));
    loareq_set_format(&app, TextOf(asked.format));
    loareq_set_attrs(&app, TextOf(asked.attrs));
    loareq_set_default_val(&app, TextOf(asked.defaultValue));
    loareq_set_fnArg(&app, TextOf(asked.format));
    RequestState const* const state = FindRequest(&app);
    Expect(state != nullptr, "a request is known");
    ExpectEqual(MakeAnswer(*state, {providers, 1}), answer, "a request is what was set");
    auto const* const handed = reinterpret_cast<char const*>(app.loaState[6]);
    ExpectEqual(handed != nullptr ? Value(handed) : std::nullopt, asked.format,
                "a get-function is handed the argument");
    app.out = open_memstream(&text, &size);
    int const status = AnswerRequest(&app, "fuzz", {providers, 1});
    std::fclose(app.out);
    ExpectEqual(status, 0, "AnswerRequest: 0 says it is written");
    ExpectEqual(std::string(text, size), answer, "AnswerRequest: the answer and no more");
    std::free(text);
    loareq_free(&app);
    Expect(FindRequest(&app) == nullptr && CountRequests() == 0, "a request ends");
    ExpectEqual(TakeHostLog(), Texts(), "a request of any form is logged nowhere");
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    object = MakeTable(feed);
    RequestState const state = MakeRequest(feed);
    std::string const answer = MakeAnswer(state, {providers, 1});
    ExpectEqual(answer, ByTheRules(state), "MakeAnswer: a line a record, by the format");
    ExpectEqual(SplitAttributes(state.attrs.value_or("")), Names(state.attrs.value_or("")),
                "SplitAttributes: one blank between two names");
    CheckCalls(state, answer);
}
