// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/CoreProgressBar.h"

#include <utility>

namespace ZEBGis {
namespace {

IProgressView* g_view = nullptr;

} // namespace

IProgressView* SetProgressView(IProgressView* view) {
    return std::exchange(g_view, view);
}

void CCoreProgressBar::SetCaption(const char16_t* caption) {
    m_state.caption = Platform::TextOf(caption);
    Tell();
}

void CCoreProgressBar::SetRange(int from, int to) {
    m_state.from = from;
    m_state.to = to;
    Tell();
}

void CCoreProgressBar::SetPos(int position) {
    m_state.position = position;
    Tell();
}

void CCoreProgressBar::SetText(const char16_t* text) {
    m_state.text = Platform::TextOf(text);
    Tell();
}

void CCoreProgressBar::Show() {
    m_isShown = true;
    Tell();
}

void CCoreProgressBar::Hide() {
    m_isShown = false;
    if (g_view)
        g_view->Hide();
}

void CCoreProgressBar::Tell() {
    if (m_isShown && g_view)
        g_view->Update(m_state);
}

} // namespace ZEBGis
