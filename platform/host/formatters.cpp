// The formatters of the attribute service: one engine over three lists of objects.
#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "host/answer_stream.hpp"
#include "host/attribute_service.hpp"
#include "host/contract.hpp"
#include "host/format_line.hpp"
#include "host/query_timer.hpp"
#include "host/sys/sys_objects.hpp"

namespace QuilloHost {

namespace {

constexpr std::size_t noColumn = static_cast<std::size_t>(-1);

std::optional<Table> ReadObject(std::string const& object, ProviderList providers) {
    std::size_t const blank = std::min(object.find(' '), object.size());
    bool const isSearch = blank != object.size();
    for (Provider const& provider : providers)
        if (object.compare(0, blank, provider.object) == 0 &&
            (!isSearch || provider.find != nullptr))
            return isSearch ? provider.find(object.substr(blank + 1)) : provider.read();
    return std::nullopt;
}

// The columns of the attributes that the request names, `noColumn` for one that is unknown.
std::vector<std::size_t> FindColumns(std::string const& attrs, Table const& table) {
    std::vector<std::size_t> columns;
    for (std::string const& name : SplitAttributes(attrs)) {
        auto const found = std::find(table.columns.begin(), table.columns.end(), name);
        bool const isKnown = found != table.columns.end();
        columns.push_back(isKnown ? static_cast<std::size_t>(found - table.columns.begin())
                                  : noColumn);
    }
    return columns;
}

std::vector<Value> PickValues(Record const& record, std::vector<std::size_t> const& columns) {
    std::vector<Value> values;
    for (std::size_t column : columns)
        values.push_back(column == noColumn ? std::nullopt : record[column]);
    return values;
}

bool Answer(ZOV_AppData const& app, RequestState const& state, ProviderList providers) {
    std::string const object = state.object.value_or("");
    QueryTimer const timer(object.c_str());
    return WriteAnswer(app.out, MakeAnswer(state, providers), "object \"" + object + "\"");
}

}  // namespace

std::string MakeAnswer(RequestState const& state, ProviderList providers) {
    std::string const defaultValue = state.defaultValue.value_or("");
    std::optional<Table> const table = ReadObject(state.object.value_or(""), providers);
    if (!table)
        return defaultValue;
    std::string const format = state.format.value_or("");
    std::vector<std::size_t> const columns = FindColumns(state.attrs.value_or(""), *table);
    std::string answer;
    for (Record const& record : table->records)
        answer += FormatLine(format, PickValues(record, columns), defaultValue);
    return answer;
}

int AnswerRequest(ZOV_AppData* app, char const* formatter, ProviderList providers) noexcept {
    RequestState const* const state = FindRequest(app);
    char const* problem = nullptr;
    if (state == nullptr)
        problem = "there is no request";
    else if (state->isIncomplete)
        problem = "memory ran out while the request was set up";
    try {
        if (problem == nullptr)
            return Answer(*app, *state, providers) ? 0 : 1;
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: %s", formatter, problem);
    } catch (std::exception const& error) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: %s", formatter, error.what());
    }
    return 1;
}

}  // namespace QuilloHost

using QuilloHost::AnswerRequest;
using QuilloHost::ProviderList;

// The platform has no objects of this kind yet: each request gets its default value.
int format_true_loa_request(ZOV_AppData* app) {
    return AnswerRequest(app, __func__, ProviderList());
}

// As above.
int format_con_request(ZOV_AppData* app) {
    return AnswerRequest(app, __func__, ProviderList());
}

int format_sys_request(ZOV_AppData* app) {
    return AnswerRequest(app, __func__, QuilloHost::SysObjects());
}
