// SPDX-License-Identifier: MIT
// What the three pages with a list of things to load have in common: the layout, and which
// control says and does what.
#pragma once

#include "platform/window/TabDialog.h"

#include <array>

namespace Repository {

// The page that holds a group of everything with the usual margins around it.
inline constexpr int kPageWidth = 316;
inline constexpr int kPageHeight = 181;

inline constexpr int kIdGroup = 110;
inline constexpr int kIdLoadSelected = 114;
inline constexpr int kIdLoadAll = 115;
inline constexpr int kIdSelectNone = 116;
inline constexpr int kIdSelectAll = 117;

// `group`: the group box's default text.
constexpr std::array<Platform::ControlTemplate, 6> ListPageControls(const char16_t* group,
                                                                    int listId) {
    using enum Platform::ControlClass;
    using namespace Platform;
    return {
        {{kIdGroup, GroupBox, group, 7, 7, 302, 167, GrowWide | GrowTall},
         {listId, ListView, nullptr, 14, 17, 269, 132, GrowWide | GrowTall},
         {kIdSelectAll, IconButton, u"ALL", 286, 116, 18, 16, MoveRight | MoveDown},
         {kIdSelectNone, IconButton, u"NO", 286, 133, 18, 16, MoveRight | MoveDown},
         {kIdLoadSelected, PushButton, u"Load selected", 156, 154, 62, 15, MoveRight | MoveDown},
         {kIdLoadAll, PushButton, u"Load all", 221, 154, 62, 15, MoveRight | MoveDown}}};
}

class ListPage : public CAcUiTabChildDialog {
public:
    struct Look {
        int listId;
        unsigned style;
        int msgColumn;
        int msgGroup;
        int msgName; // of the list, for a screen reader
    };

    ListPage(const Platform::DialogTemplate& controls, const Look& look)
        : CAcUiTabChildDialog(controls), m_listLook(look) {}

    virtual void OnBnClickedBtnLoadSelected() = 0;
    virtual void OnBnClickedBtnLoadall() = 0;

protected:
    virtual void AddRows(Platform::ListView list) = 0;
    Platform::ListView Rows() const { return List(m_listLook.listId); }

    bool OnInitDialog() override;
    void OnClicked(int id) override;

private:
    const Look m_listLook;
};

} // namespace Repository
