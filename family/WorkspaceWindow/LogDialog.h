// SPDX-License-Identifier: MIT
// The window of the workspace log: the lines as they come, by kind, to copy and to save.
#pragma once

#include "LogLines.h"

#include "platform/window/Dialog.h"

namespace ZEBGis::Workspace {

// The identifiers of its controls; Close is Platform::kIdCancel.
enum LogControl : int {
    kIdLines = 101,
    kIdSuccesses = 102,
    kIdWarnings = 103,
    kIdFailures = 104,
    kIdCopy = 105,
    kIdSave = 106,
    kIdOutcome = 107
};

class CDlgWorkspaceLog : public Platform::Dialog {
public:
    // The lines must outlive the window.
    explicit CDlgWorkspaceLog(CWsLogLines& lines);

    // Keeps the message, and shows it soon where its kind is shown: lines come fast.
    void Add(const CWsMessage& message);

protected:
    bool OnInitDialog() override;
    void OnClicked(int id) override;
    void OnChanged(int id) override;
    void OnUpdate() override;

private:
    void FillList();
    void ShowLine(const CWsMessage& line);
    void ShowCount(LineKind kind);
    void SizeColumns();
    void FollowEnd(bool wasAtEnd);
    void Tell(const CString& outcome);
    // The marked lines, or all that are shown when none is marked.
    std::vector<const CWsMessage*> ChosenLines() const;
    void Copy();
    void Save();

    CWsLogLines& m_lines;
    std::array<CString, kLineKinds.size()> m_words;  // "Success", for each kind
    std::array<CString, kLineKinds.size()> m_counts; // "Successes: %s"
    std::vector<const CWsMessage*> m_newLines;       // not in the list yet
    bool m_isFilled = false;
};

} // namespace ZEBGis::Workspace
