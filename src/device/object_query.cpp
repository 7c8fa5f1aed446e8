// Object queries: a request in two lines, and its answer as a table.
//
//     name mtu            the attributes asked for
//     %1<TAB>%2<NL>       how a record is to be answered
//
//     lo<TAB>65536<NL>    the answer: a line a record
//     eth0<TAB>1500<NL>
#include <attribute_service.h>

#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {
namespace {

typedef std::vector<std::string> Row;

char const self[] = "GetObject";

// What the service answers for an object that cannot be had.
char const unavailable[] = "Unavailable";

// `attrs` is not empty.
std::string AttributeLine(std::vector<std::string> const& attrs) {
    std::string line = attrs.front();
    for (std::size_t i = 1; i < attrs.size(); ++i) {
        Append(line, {" ", attrs[i]});
    }
    return line;
}

std::string FormatLine(std::size_t count) {
    std::string line;
    for (std::size_t position = 1; position <= count; ++position) {
        Append(line, {position == 1 ? "%" : "\t%", position});
    }
    return line.append("\n");
}

void SetRequest(ZOV_AppData& app, std::string const& object,
                std::vector<std::string> const& attrs) {
    loareq_set_object(&app, object.c_str());
    loareq_set_attrs(&app, AttributeLine(attrs).c_str());
    loareq_set_format(&app, FormatLine(attrs.size()).c_str());
    loareq_set_default_val(&app, unavailable);
}

// Has the service write the answer. Not 0: it failed. A kind that does not exist has no answer.
int WriteAnswer(ZOV_AppData& app, ObjectType type) {
    if (type == ObjectType_Con && format_con_request(&app) != 0) {
        ReportDiagnostic(logSpecError, "%s: format_con_request() failed", self);
        return 1;
    }
    if (type == ObjectType_Sys && format_sys_request(&app) != 0) {
        ReportDiagnostic(logSpecError, "%s: format_sys_request() failed", self);
        return 1;
    }
    if (type == ObjectType_Loa && format_true_loa_request(&app) != 0) {
        ReportDiagnostic(logSpecError, "%s: format_true_loa_request() failed", self);
        return 1;
    }
    return 0;
}

// Reads the line at `p` into `row` and returns where the next one starts.
char const* ParseLine(char const* p, Row& row) {
    for (;;) {
        std::size_t const length = std::strcspn(p, "\t\n");
        row.emplace_back(p, length);
        p += length;
        if (*p == '\0') {
            ReportDiagnostic(logSpecWarn, "%s: Missing \\n at end of result string", self);
            return p;
        }
        if (*p++ == '\n') {
            return p;
        }
    }
}

std::vector<Row> ParseAnswer(std::string const& answer) {
    std::vector<Row> rows;
    char const* p = answer.c_str();
    while (*p != '\0') {
        p = ParseLine(p, Glb::extend_one(rows));
    }
    return rows;
}

// Gives every row as many values as attributes were asked for.
void EvenOut(std::vector<Row>& rows, std::size_t count) {
    for (Row& row : rows) {
        if (row.size() != count) {
            ReportDiagnostic(logSpecWarn,
                             "%s:  Got back unexpected number of attributes: %d instead of %d",
                             self, Glb::isize(row), static_cast<int>(count));
            row.resize(count);
        }
    }
}

}  // namespace

int GetObject(ZOV_AppData& app, ObjectType type, std::string const& object,
              std::vector<std::string> const& attrs, std::vector<std::vector<std::string>>& rows) {
    // The object's name or the attributes may lie in the table that is emptied: it is kept so long.
    std::vector<Row> formerRows;
    formerRows.swap(rows);

    LoaReq request(app);
    if (request.Init() != 0) {
        ReportDiagnostic(logSpecError, "%s: LoaReq::Init() failed", self);
        return 1;
    }
    if (attrs.empty()) {
        ReportDiagnostic(logSpecError, "%s:  No attributes were supplied!", self);
        return 1;
    }
    SetRequest(app, object, attrs);
    if (WriteAnswer(app, type) != 0) {
        return 1;
    }
    std::string const answer = request.Finish();
    if (answer == unavailable) {
        ReportDiagnostic(logSpecError, "%s:  object is \"Unavailable\"", self);
        return 1;
    }
    std::vector<Row> parsedRows = ParseAnswer(answer);
    EvenOut(parsedRows, attrs.size());
    rows.swap(parsedRows);
    return 0;
}

}  // namespace Quillo
