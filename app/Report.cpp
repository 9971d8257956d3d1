// SPDX-License-Identifier: MIT
#include "app/Report.h"

#include <algorithm>
#include <ostream>

namespace App {
namespace {

constexpr const char* kWithoutMemory =
    R"({"schema": "zebx/error/1", "verb": null, "status": 70, "result": null, "messages": [],)"
    R"( "error": {"status": 70, "text": "out of memory"}})";

const char* KindOf(std::int32_t type) {
    using namespace ZEBGis::Workspace;
    if (type == MessageFailure)
        return "failure";
    return type == MessageWarning ? "warning" : "success";
}

// "repo check" has the schema "zebx/repo-check/1".
std::string SchemaOf(const Report& report) {
    std::string name = report.verb.empty() ? "error" : report.verb;
    std::replace(name.begin(), name.end(), ' ', '-');
    return "zebx/" + name + "/1";
}

std::string TextOf(const Report& report, ExitStatus status) try {
    const Json document = {{"schema", SchemaOf(report)},
                           {"verb", report.verb.empty() ? Json() : Json(report.verb)},
                           {"status", static_cast<int>(status)},
                           {"result", report.result},
                           {"messages", report.messages},
                           {"error", report.error}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace);
} catch (const std::bad_alloc&) {
    return kWithoutMemory;
}

} // namespace

void Report::SetError(ExitStatus status, const CString& text) {
    error = {{"status", static_cast<int>(status)}, {"text", text}};
}

// A sink must not throw; a message that there is no memory for is lost.
void ReportSink::Write(const ZEBGis::Workspace::CWsMessage& message) try {
    m_report.messages.push_back({{"kind", KindOf(message.type)}, {"text", message.text}});
} catch (...) {
}

void WriteReport(std::ostream& out, const Report& report, ExitStatus status) {
    out << TextOf(report, status) << '\n';
}

} // namespace App
