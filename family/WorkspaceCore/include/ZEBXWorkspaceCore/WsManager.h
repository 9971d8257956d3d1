// SPDX-License-Identifier: MIT
// The workspace log: what a user should see of the family's work, handed to any
// number of sinks (a terminal, a log file, a window).
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <vector>

namespace Platform {
class AppendedFile;
}

namespace ZEBGis::Workspace {

enum enmMessageType : std::int32_t { MessageSuccess = 1, MessageWarning = 2, MessageFailure = 4 };

struct CWsMessage {
    CString time; // UTC, "2026-11-21T08:05:19Z"
    std::int32_t type = MessageSuccess;
    CString text;
    std::int32_t entityType = 0;
    CString name;
    const void* objectId = nullptr;
    std::int32_t selectionType = 0;
};

class ZEBX_EXPORT IWsSink {
public:
    virtual ~IWsSink() = default;
    // Must not throw; the message is valid during the call only.
    virtual void Write(const CWsMessage& message) = 0;
};

class ZEBX_EXPORT CWsManager {
public:
    static CWsManager* Instance();

    // Hands the message to every sink, in the order in which they were added.  Without
    // a sink it is dropped.  Null texts read as empty.
    void LogMessage(std::int32_t type, const char16_t* text, std::int32_t entityType = 0,
                    const char16_t* name = nullptr, const void* objectId = nullptr,
                    std::int32_t selectionType = 0);

    // The log shares the sink; a sink that was added already is not added again.
    void AddSink(const boost::shared_ptr<IWsSink>& sink);
    void RemoveSink(const boost::shared_ptr<IWsSink>& sink);

    // Shows the window of the log, which keeps what it is told from its first showing on; one
    // that is shown stays where it is.  Loads the window's module from the installation folder
    // when it is first shown.  Returns 0 where it cannot be shown, with the reason, the file
    // and what the system says, in `reason` when that is not null.
    int ShowWindow(CString* reason = nullptr);
    // Does nothing where none is shown.
    void HideWindow();

private:
    CWsManager() = default;
    std::vector<boost::shared_ptr<IWsSink>> m_sinks;
    void (*m_hideWindow)() = nullptr; // of the window's module, once it was shown
};

// The line that stands for the message in a file, without its end: time, word for the type,
// text, separated by tabs; line breaks inside the text become blanks.
ZEBX_EXPORT CString LineOf(const CWsMessage& message);

// Appends each message as one line.  A file that cannot be written is given up silently: the
// log must not stop the work.
class ZEBX_EXPORT CWsLogFile : public IWsSink {
public:
    // `path` need not exist; its folder is created, private, at the first line.
    explicit CWsLogFile(CStringView path);
    ~CWsLogFile() override;
    CWsLogFile(const CWsLogFile&) = delete;
    CWsLogFile& operator=(const CWsLogFile&) = delete;
    void Write(const CWsMessage& message) override;

private:
    CString m_path;
    std::unique_ptr<Platform::AppendedFile> m_file;
};

} // namespace ZEBGis::Workspace
