// SPDX-License-Identifier: MIT
#include "app/Progress.h"

#include "app/Texts.h"

#include "platform/text/Numbers.h"

#include <utility>

namespace App {
namespace {

using Platform::FileStep;

constexpr std::chrono::milliseconds kBetweenLines(100);

constexpr std::array kTexts = {Message::ProgressRead, Message::ProgressStored,
                               Message::ProgressWritten, Message::ProgressItemsSent,
                               Message::ProgressItemsLoaded};

} // namespace

Progress::Progress(TerminalSink& terminal)
    : m_terminal(terminal), m_formerView(ZEBGis::SetProgressView(this)) {
    m_formerListener = Platform::SetFileStepListener([this](FileStep step) {
        Count(step);
        if (m_formerListener)
            m_formerListener(step);
    });
}

Progress::~Progress() {
    Platform::SetFileStepListener(std::move(m_formerListener));
    ZEBGis::SetProgressView(m_formerView);
    m_terminal.ShowProgress({});
}

void Progress::Begin(const CString& selection) {
    m_selection = selection;
    m_files = {};
    m_bar.reset();
    m_begun = Clock::now();
}

double Progress::Seconds() const {
    return std::chrono::duration<double>(Clock::now() - m_begun).count();
}

// The line is a courtesy: what there is no memory for is not shown.
void Progress::Count(FileStep step) try {
    // The first of its kind at once: a short step would not be seen at all.
    const bool isFirst = ++m_files[static_cast<std::size_t>(step)] == 1;
    if (!m_terminal.ShowsProgress() || (!isFirst && Clock::now() - m_shown < kBetweenLines))
        return;
    Show();
} catch (...) {
}

// A new position alone is shown with the next text or step: its text is still the former's.
void Progress::Update(const ZEBGis::ProgressState& state) try {
    const bool isNew = !m_bar || m_bar->text != state.text;
    m_bar = state;
    if (isNew && m_terminal.ShowsProgress())
        Show();
} catch (...) {
}

void Progress::Show() {
    m_shown = Clock::now();
    m_terminal.ShowProgress(Line());
}

CString Progress::Line() const {
    CString line = Title();
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        if (m_files[i] > 0)
            line += u"  " + Text(kTexts[i], {Platform::ToText(m_files[i])});
    }
    return line + u"  " + Platform::ToText(static_cast<int>(Seconds())) + u" s";
}

CString Progress::Title() const {
    if (!m_bar)
        return m_selection + u":";
    if (m_bar->text.empty())
        return m_bar->caption + u":";
    return Text(Message::ProgressPosition,
                {m_bar->text, Platform::ToText(m_bar->position + 1), Platform::ToText(m_bar->to)});
}

} // namespace App
