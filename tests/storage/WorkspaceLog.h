// SPDX-License-Identifier: MIT
// The workspace log piece by piece, as a test's calls write it.
#pragma once

#include "support/WorkspaceLines.h"

namespace Storage {

class WorkspaceLog {
public:
    // The failures (kind 4) since the last call; any other kind is marked as such.
    std::vector<CString> Take() {
        std::vector<CString> texts;
        for (const auto& [type, text] : m_lines.Lines())
            texts.push_back(type == ZEBGis::Workspace::MessageFailure ? text
                                                                      : u"no failure: " + text);
        texts.erase(texts.begin(), texts.begin() + m_taken);
        m_taken += static_cast<std::ptrdiff_t>(texts.size());
        return texts;
    }

private:
    WorkspaceLines m_lines;
    std::ptrdiff_t m_taken = 0;
};

} // namespace Storage
