// SPDX-License-Identifier: MIT
// The lines that the workspace log's window keeps and shows: which of them, as what text, and
// their way into a file.  Knows nothing of the window.
#pragma once

#include "ZEBXWorkspaceCore/WsManager.h"

#include <array>
#include <deque>

namespace ZEBGis::Workspace {

enum class LineKind { Success, Warning, Failure };
inline constexpr std::array kLineKinds = {LineKind::Success, LineKind::Warning, LineKind::Failure};

// Of a message's type; an unknown one is shown among the successes.
LineKind KindOf(std::int32_t type);

class CWsLogLines {
public:
    // More are not kept: then the oldest tenth goes, which the log file still has.
    static constexpr std::size_t kMostLines = 100'000;

    // Returns the line, which stays where it is until it goes, or null when some had to go.
    const CWsMessage* Add(const CWsMessage& message);

    const std::deque<CWsMessage>& Lines() const { return m_lines; }
    bool HaveSomeGone() const { return m_haveSomeGone; }
    // Of the lines that are kept.
    std::size_t Count(LineKind kind) const { return m_counts[Index(kind)]; }

    // Every kind is shown at first.
    void SetShown(LineKind kind, bool isShown) { m_isShown[Index(kind)] = isShown; }
    bool IsShown(LineKind kind) const { return m_isShown[Index(kind)]; }
    std::vector<const CWsMessage*> ShownLines() const;

private:
    static std::size_t Index(LineKind kind) { return static_cast<std::size_t>(kind); }
    void DropOldest();

    std::deque<CWsMessage> m_lines;
    std::array<std::size_t, kLineKinds.size()> m_counts = {};
    std::array<bool, kLineKinds.size()> m_isShown = {true, true, true};
    bool m_haveSomeGone = false;
};

// The lines as they stand in the log file, each with its end.
CString TextOf(const std::vector<const CWsMessage*>& lines);

// Writes the text to a file, whole or not at all.  Empty, or why it was not written.
CString SaveText(const CString& text, const CString& path);

} // namespace ZEBGis::Workspace
