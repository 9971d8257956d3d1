// SPDX-License-Identifier: MIT
#include "LogDialog.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/Environment.h"
#include "platform/os/Path.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "platform/window/WindowSystem.h"

#include <algorithm>
#include <iterator>

namespace ZEBGis::Workspace {
namespace {

using Platform::ControlClass;
using Platform::kIdCancel;

enum class LogText : int {
    Title = 12100,
    Time = 12101,
    Kind = 12102,
    Text = 12103,
    Success = 12104, // and, in the order of LineKind, Warning and Failure
    Successes = 12107,
    Copy = 12110,
    SaveAs = 12111,
    Filter = 12112,
    FileName = 12113,
    Copied = 12114,
    Saved = 12115,
    NotSaved = 12116,
    SomeGone = 12117,
    NameOfList = 12118,
    NameOfOutcome = 12119,
    Close = 235
};

CString Msg(LogText number, std::initializer_list<CStringView> values = {}) {
    return Platform::Fill(CModuleConfiguration::Instance()->GetMsg(static_cast<int>(number)),
                          values);
}

// The texts of the kinds follow each other in the table.  Taken once: lines come fast.
std::array<CString, kLineKinds.size()> MsgsOfKinds(LogText first) {
    std::array<CString, kLineKinds.size()> texts;
    for (const LineKind kind : kLineKinds)
        texts[static_cast<std::size_t>(kind)] = CModuleConfiguration::Instance()->GetMsg(
            static_cast<int>(first) + static_cast<int>(kind));
    return texts;
}

CString ToText(std::size_t count) {
    return Platform::ToText(static_cast<std::int64_t>(count));
}

int BoxOf(LineKind kind) {
    return kIdSuccesses + static_cast<int>(kind);
}

const char16_t* IconOf(LineKind kind) {
    constexpr std::array kIcons = {u"IDI_SUCCESS", u"IDI_WARNING", u"IDI_FAILURE"};
    return kIcons[static_cast<std::size_t>(kind)];
}

constexpr int kTimeColumn = 0;
constexpr int kKindColumn = 1;
constexpr int kTextColumn = 2;

constexpr unsigned kWithCorner = Platform::MoveRight | Platform::MoveDown;
constexpr std::array<Platform::ControlTemplate, 8> kControls = {{
    {kIdLines, ControlClass::ListView, nullptr, 7, 7, 386, 150,
     Platform::GrowWide | Platform::GrowTall},
    {kIdSuccesses, ControlClass::CheckBox, u"Successes", 7, 163, 90, 12, Platform::MoveDown},
    {kIdWarnings, ControlClass::CheckBox, u"Warnings", 101, 163, 90, 12, Platform::MoveDown},
    {kIdFailures, ControlClass::CheckBox, u"Failures", 195, 163, 90, 12, Platform::MoveDown},
    {kIdOutcome, ControlClass::ReadOnlyText, nullptr, 7, 179, 200, 26,
     Platform::MoveDown | Platform::GrowWide},
    {kIdCopy, ControlClass::PushButton, u"Copy", 213, 189, 54, 14, kWithCorner},
    {kIdSave, ControlClass::PushButton, u"Save as...", 271, 189, 68, 14, kWithCorner},
    {kIdCancel, ControlClass::DefaultPushButton, u"Close", 343, 189, 50, 14, kWithCorner},
}};
constexpr Platform::DialogTemplate kLook = {u"Workspace log", 400, 210, kControls};

} // namespace

CDlgWorkspaceLog::CDlgWorkspaceLog(CWsLogLines& lines) : Dialog(kLook), m_lines(lines) {
    SetUsableWhileBusy(true);
}

bool CDlgWorkspaceLog::OnInitDialog() {
    SetTitle(Msg(LogText::Title));
    m_words = MsgsOfKinds(LogText::Success);
    m_counts = MsgsOfKinds(LogText::Successes);
    auto list = List(kIdLines);
    for (const LogText header : {LogText::Time, LogText::Kind, LogText::Text})
        list.InsertColumn(Msg(header));
    SetAccessibleName(kIdLines, Msg(LogText::NameOfList));
    SetAccessibleName(kIdOutcome, Msg(LogText::NameOfOutcome));
    SetVisible(kIdOutcome, false);
    SetText(kIdCopy, Msg(LogText::Copy));
    SetText(kIdSave, Msg(LogText::SaveAs));
    SetText(kIdCancel, Msg(LogText::Close));
    for (const LineKind kind : kLineKinds)
        SetChecked(BoxOf(kind), m_lines.IsShown(kind));
    FillList();
    return true;
}

void CDlgWorkspaceLog::FillList() {
    auto list = List(kIdLines);
    list.DeleteAllRows();
    m_newLines.clear();
    for (const CWsMessage* line : m_lines.ShownLines())
        ShowLine(*line);
    for (const LineKind kind : kLineKinds)
        ShowCount(kind);
    if (m_lines.HaveSomeGone())
        Tell(Msg(LogText::SomeGone, {ToText(CWsLogLines::kMostLines)}));
    SizeColumns();
    FollowEnd(true);
    m_isFilled = true;
}

void CDlgWorkspaceLog::ShowLine(const CWsMessage& line) {
    CString text = line.text;
    std::replace_if(
        text.begin(), text.end(), [](char16_t c) { return c == u'\n' || c == u'\r'; }, u' ');
    const LineKind kind = KindOf(line.type);
    List(kIdLines).AddRow({Platform::LocalTimeOfDay(line.time),
                           m_words[static_cast<std::size_t>(kind)], std::move(text)},
                          &line, IconOf(kind), kKindColumn);
}

void CDlgWorkspaceLog::ShowCount(LineKind kind) {
    SetText(BoxOf(kind), Platform::Fill(m_counts[static_cast<std::size_t>(kind)],
                                        {ToText(m_lines.Count(kind))}));
}

void CDlgWorkspaceLog::SizeColumns() {
    auto list = List(kIdLines);
    for (const int column : {kTimeColumn, kKindColumn, kTextColumn})
        list.SizeColumnToHeader(column);
}

void CDlgWorkspaceLog::Tell(const CString& outcome) {
    SetText(kIdOutcome, outcome);
    SetVisible(kIdOutcome, true);
}

void CDlgWorkspaceLog::FollowEnd(bool wasAtEnd) {
    auto list = List(kIdLines);
    if (wasAtEnd)
        list.ScrollTo(list.RowCount() - 1);
}

void CDlgWorkspaceLog::Add(const CWsMessage& message) {
    const CWsMessage* line = m_lines.Add(message);
    if (!m_isFilled)
        return;
    if (!line)
        return FillList();
    m_newLines.push_back(line);
    UpdateSoon();
}

void CDlgWorkspaceLog::OnUpdate() {
    const bool wasAtEnd = List(kIdLines).IsAtEnd();
    for (const CWsMessage* line : m_newLines)
        if (m_lines.IsShown(KindOf(line->type)))
            ShowLine(*line);
    m_newLines.clear();
    for (const LineKind kind : kLineKinds)
        ShowCount(kind);
    SizeColumns();
    FollowEnd(wasAtEnd);
}

std::vector<const CWsMessage*> CDlgWorkspaceLog::ChosenLines() const {
    const auto list = List(kIdLines);
    std::vector<const CWsMessage*> lines;
    for (const int row : list.SelectedRows())
        lines.push_back(static_cast<const CWsMessage*>(list.Data(row)));
    return lines.empty() ? m_lines.ShownLines() : lines;
}

void CDlgWorkspaceLog::OnClicked(int id) {
    if (id == kIdCopy)
        Copy();
    else if (id == kIdSave)
        Save();
    else
        Dialog::OnClicked(id);
}

void CDlgWorkspaceLog::OnChanged(int id) {
    for (const LineKind kind : kLineKinds) {
        if (id != BoxOf(kind))
            continue;
        m_lines.SetShown(kind, IsChecked(id));
        FillList();
    }
}

void CDlgWorkspaceLog::Copy() {
    const auto lines = ChosenLines();
    Platform::SetClipboardText(TextOf(lines));
    Tell(Msg(LogText::Copied, {ToText(lines.size())}));
}

void CDlgWorkspaceLog::Save() {
    // Before the question: while it stands lines come and go.
    const auto lines = ChosenLines();
    const CString count = ToText(lines.size());
    const CString text = TextOf(lines);
    const auto path = Platform::ChooseFile({.title = Msg(LogText::SaveAs),
                                            .folder = {},
                                            .name = Msg(LogText::FileName),
                                            .filter = Msg(LogText::Filter),
                                            .isForSaving = true});
    if (!path)
        return;
    const CString shown = Platform::FromUtf8(Platform::NativePath(*path));
    const CString reason = SaveText(text, *path);
    Tell(reason.empty() ? Msg(LogText::Saved, {shown, count})
                        : Msg(LogText::NotSaved, {shown, reason}));
}

} // namespace ZEBGis::Workspace
