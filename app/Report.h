// SPDX-License-Identifier: MIT
// The document of one run that --json asks for: what a verb found, what it said, and what
// stopped it.  docs/schemas/ holds the shape of each verb's document.
#pragma once

#include "app/AppError.h"
#include "app/Json.h"

#include "ZEBXWorkspaceCore/WsManager.h"

#include <iosfwd>
#include <string>

namespace App {

struct Report {
    std::string verb; // "repo check"; empty: none came to run
    Json result;      // null: the verb had none
    Json messages = Json::array();
    Json error; // null: nothing stopped the verb

    void SetError(ExitStatus status, const CString& text);
};

// Keeps what goes to the workspace log in a report, which must outlive it.
class ReportSink : public ZEBGis::Workspace::IWsSink {
public:
    explicit ReportSink(Report& report) : m_report(report) {}
    void Write(const ZEBGis::Workspace::CWsMessage& message) override;

private:
    Report& m_report;
};

// Writes the document.  Text that is no UTF-8 has U+FFFD in its place.  When memory does
// not suffice the document says that alone; it is a whole document in any case.
void WriteReport(std::ostream& out, const Report& report, ExitStatus status);

} // namespace App
