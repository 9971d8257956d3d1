// SPDX-License-Identifier: MIT
#include "client/dialog/ProgressWindow.h"

#include "client/util/Border.h"
#include "platform/window/WindowSystem.h"

namespace Repository {
namespace {

using namespace Platform;

constexpr int kIdText = 101;
constexpr int kIdBar = 102;

constexpr ControlTemplate kControls[] = {
    {kIdText, ControlClass::Label, nullptr, 7, 7, 206, 18, GrowWide | GrowTall},
    {kIdBar, ControlClass::ProgressBar, nullptr, 7, 28, 206, 12, GrowWide | MoveDown},
};
constexpr DialogTemplate kTemplate{nullptr, 220, 47, kControls};

} // namespace

ProgressWindow::ProgressWindow() : Dialog(kTemplate), m_formerView(ZEBGis::SetProgressView(this)) {
    SetUsableWhileBusy(true);
}

ProgressWindow::~ProgressWindow() {
    ZEBGis::SetProgressView(m_formerView);
}

void ProgressWindow::Update(const ZEBGis::ProgressState& state) {
    AtBorder([&] {
        if (state.text.empty()) // a new bar
            m_isClosedByUser = false;
        if (!m_isClosedByUser)
            ShowState(state);
        PumpWindows();
    });
}

void ProgressWindow::ShowState(const ZEBGis::ProgressState& state) {
    Create();
    SetTitle(state.caption);
    SetText(kIdText, state.text);
    SetAccessibleName(kIdBar, state.caption);
    SetRange(kIdBar, state.from, state.to);
    SetPosition(kIdBar, state.position);
    if (!IsShown())
        Show();
}

void ProgressWindow::Hide() {
    Dialog::Hide();
}

void ProgressWindow::OnCancel() {
    m_isClosedByUser = true;
    Dialog::Hide();
}

} // namespace Repository
