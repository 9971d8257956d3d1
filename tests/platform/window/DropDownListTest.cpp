// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QComboBox>
#include <gmock/gmock.h>

using namespace Platform;
using testing::ElementsAre;

namespace {

constexpr ControlTemplate kControls[] = {{10, ControlClass::DropDownList, nullptr, 7, 7, 100, 100}};
constexpr DialogTemplate kLook = {u"DropDown", 114, 114, kControls};

class ADropDownList : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.Show();
        list = dialog.DropDown(10);
    }
    SampleDialog dialog{kLook};
    DropDownList list{nullptr};
};

TEST_F(ADropDownList, ChoosesNothingByItself) {
    EXPECT_EQ(list.Selected(), -1);
    EXPECT_EQ(list.Add(u"<All & everything>"), 0);
    EXPECT_EQ(list.Add(u"second", this), 1);
    EXPECT_EQ(list.Selected(), -1);
}

TEST_F(ADropDownList, KeepsTextsAndDataOfItsEntries) {
    const CString strange = CString(u"a\n&") + char16_t(0xD801) + u'\0';
    list.Add(strange);
    list.Add(u"second", this);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Text(0), strange);
    EXPECT_EQ(list.Data(0), nullptr);
    EXPECT_EQ(list.Data(1), this);
    EXPECT_EQ(list.Text(5), u"");
    EXPECT_EQ(list.Data(-1), nullptr);
    list.Select(1);
    EXPECT_EQ(list.Selected(), 1);
    list.Select(-1);
    EXPECT_EQ(list.Selected(), -1);
}

TEST_F(ADropDownList, TellsWhatTheUserChose) {
    list.Add(u"first");
    list.Add(u"second");
    list.Select(0);
    EXPECT_TRUE(dialog.changed.empty());
    QTest::keyClick(ControlOf(WindowTitled("DropDown"), 10), Qt::Key_Down);
    EXPECT_EQ(list.Selected(), 1);
    EXPECT_THAT(dialog.changed, ElementsAre(10));
}

TEST_F(ADropDownList, WithoutAListHasNothing) {
    DropDownList none(nullptr);
    EXPECT_EQ(none.Add(u"x"), -1);
    EXPECT_EQ(none.Count(), 0);
    EXPECT_EQ(none.Selected(), -1);
    none.Select(0);
}

} // namespace
