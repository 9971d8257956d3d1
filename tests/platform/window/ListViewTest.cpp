// SPDX-License-Identifier: MIT
#include "SampleDialog.h"

#include <QClipboard>
#include <QHeaderView>
#include <QScrollBar>
#include <QTreeView>
#include <gmock/gmock.h>

using namespace Platform;
using testing::ElementsAre;

namespace {

constexpr ControlTemplate kControls[] = {
    {10, ControlClass::ListView, nullptr, 7, 7, 200, 100, GrowWide | GrowTall}};
constexpr DialogTemplate kLook = {u"List", 214, 114, kControls};

class AListView : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        dialog.Create();
        view = ControlOf<QTreeView>(WindowTitled("List"), 10);
        ASSERT_TRUE(view);
        list.InsertColumn(u"Name");
    }
    void ShowIt() {
        dialog.Show();
        QApplication::processEvents();
    }
    QPoint MiddleOf(int row) { return view->visualRect(view->model()->index(row, 0)).center(); }
    QTreeView* view = nullptr;
    SampleDialog dialog{kLook};
    ListView list{nullptr};
};

class AFilledListView : public AListView {
protected:
    void SetUp() override {
        AListView::SetUp();
        dialog.Create();
        view = ControlOf<QTreeView>(WindowTitled("List"), 10);
        list = dialog.List(10);
        list.SetStyle(ListView::CheckBoxes | ListView::GridLines);
        EXPECT_EQ(list.InsertColumn(u"Name"), 0);
        EXPECT_EQ(list.InsertColumn(u"What"), 1);
        EXPECT_EQ(list.AddRow({u"first", u"1"}, this), 0);
        EXPECT_EQ(list.AddRow({u"second"}), 1);
        EXPECT_EQ(list.AddRow({u"third", u"3", u"too many"}, nullptr, u"IDI_WARNING"), 2);
    }
};

TEST_F(AListView, WithoutAListHasNothing) {
    ListView none(nullptr);
    none.SetStyle(ListView::CheckBoxes);
    none.SizeColumnToHeader(0);
    none.SetCheckState(0, 1);
    none.SelectAll();
    EXPECT_EQ(none.InsertColumn(u"x"), -1);
    EXPECT_EQ(none.RowCount(), 0);
    EXPECT_EQ(none.Text(0, 0), u"");
    EXPECT_TRUE(none.IsAtEnd());
}

TEST_F(AFilledListView, KeepsTextsAndDataOfItsRows) {
    EXPECT_EQ(list.RowCount(), 3);
    EXPECT_EQ(list.Text(0, 1), u"1");
    EXPECT_EQ(list.Text(1, 1), u"");
    EXPECT_EQ(list.Text(3, 0), u"");
    EXPECT_EQ(list.Text(-1, -1), u"");
    EXPECT_EQ(list.Data(0), this);
    EXPECT_EQ(list.Data(1), nullptr);
    EXPECT_EQ(list.Data(7), nullptr);
    list.DeleteAllRows();
    EXPECT_EQ(list.RowCount(), 0);
    EXPECT_EQ(list.AddRow({u"again"}), 0);
}

TEST_F(AFilledListView, TicksRowsWhollyPartlyAndNot) {
    list.SetCheckState(0, 1);
    list.SetCheckState(1, 2);
    list.SetCheckState(9, 1);
    EXPECT_EQ(list.CheckState(0), 1);
    EXPECT_EQ(list.CheckState(1), 2);
    EXPECT_EQ(list.CheckState(2), 0);
    EXPECT_EQ(list.CheckState(9), 0);
    list.SetAllCheckStates(1);
    EXPECT_EQ(list.CheckState(1) + list.CheckState(2), 2);
    EXPECT_TRUE(dialog.changed.empty()) << "the user did nothing";
}

TEST_F(AFilledListView, TheSpaceKeyTicksTheCurrentRowAlone) {
    ShowIt();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, MiddleOf(1));
    list.SelectAll();
    QTest::keyClick(view, Qt::Key_Space);
    EXPECT_EQ(list.CheckState(0), 0);
    EXPECT_EQ(list.CheckState(1), 1);
    EXPECT_THAT(dialog.changed, ElementsAre(10));
    QTest::keyClick(view, Qt::Key_Space);
    EXPECT_EQ(list.CheckState(1), 0);
}

TEST_F(AFilledListView, AClickOnABoxTicksItAndOneBesideItMarksTheWholeRow) {
    list.SetCheckState(1, 2);
    ShowIt();
    const QRect row = view->visualRect(view->model()->index(1, 0));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      QPoint(row.left() + 9, row.center().y()));
    EXPECT_EQ(list.CheckState(1), 1) << "from partly to wholly";
    EXPECT_THAT(dialog.changed, ElementsAre(10));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, MiddleOf(2) + QPoint(20, 0));
    EXPECT_THAT(list.SelectedRows(), ElementsAre(2));
    EXPECT_TRUE(view->selectionModel()->isSelected(view->model()->index(2, 1)));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::ControlModifier, MiddleOf(0));
    EXPECT_THAT(list.SelectedRows(), ElementsAre(0, 2));
    list.SelectAll();
    EXPECT_THAT(list.SelectedRows(), ElementsAre(0, 1, 2));
}

TEST_F(AFilledListView, CopiesNothingByItself) {
    SetClipboardText(u"before");
    ShowIt();
    list.SelectAll();
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "before");
}

TEST_F(AFilledListView, ItsLastColumnTakesTheRestOfTheWidthAndNoLessThanItsTexts) {
    list.SizeColumnToHeader(0);
    list.SizeColumnToHeader(1);
    ShowIt();
    const QHeaderView& header = *view->header();
    EXPECT_EQ(header.length(), view->viewport()->width());
    const int second = header.sectionSize(1);
    WindowTitled("List")->resize(WindowTitled("List")->size() + QSize(60, 0));
    QApplication::processEvents();
    EXPECT_EQ(header.sectionSize(1), second + 60);
    list.AddRow({u"x", CString(300, u'W')});
    list.SizeColumnToHeader(1);
    EXPECT_GT(header.sectionSize(1),
              QFontMetrics(view->font()).horizontalAdvance(QString(300, 'W')));
}

TEST_F(AFilledListView, StrangeTextsAreOneLine) {
    const CString strange = CString(u"a\nb") + u'\0' + char16_t(0xDC00) + u"c";
    list.AddRow({strange});
    EXPECT_EQ(list.Text(3, 0), strange);
    const QString shown = view->model()->index(3, 0).data().toString();
    EXPECT_EQ(shown.size(), 6);
    EXPECT_FALSE(shown.contains('\n') || shown.contains(QChar(0)));
    ShowIt();
    view->grab();
}

TEST_F(AFilledListView, ScrollsToARowWhenItIsLaidOut) {
    for (int i = 0; i < 200; ++i)
        list.AddRow({u"x"});
    EXPECT_FALSE(list.IsAtEnd());
    list.ScrollTo(list.RowCount() - 1);
    EXPECT_TRUE(list.IsAtEnd());
    ShowIt();
    EXPECT_TRUE(list.IsAtEnd());
    EXPECT_EQ(view->verticalScrollBar()->value(), view->verticalScrollBar()->maximum());
    list.AddRow({u"one more"});
    EXPECT_FALSE(list.IsAtEnd());
    QApplication::processEvents();
    EXPECT_FALSE(list.IsAtEnd());
    list.ScrollTo(0);
    QApplication::processEvents();
    EXPECT_EQ(view->verticalScrollBar()->value(), 0);
}

TEST_F(AFilledListView, TakesManyRowsWhileItIsShown) {
    ShowIt();
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < 100000; ++i) {
        const bool isAtEnd = list.IsAtEnd();
        list.AddRow({u"name of a file", u"what was done with it"});
        if (isAtEnd)
            list.ScrollTo(list.RowCount() - 1);
        if (i % 1000 == 0)
            QApplication::processEvents();
    }
    RecordProperty("ms", static_cast<int>(time.elapsed()));
    EXPECT_LT(time.elapsed(), 10000) << "at least ten thousand a second";
    EXPECT_EQ(list.RowCount(), 100003);
    list.SelectAll();
    EXPECT_EQ(list.SelectedRows().size(), 100003U);
    list.SetAllCheckStates(1);
    list.SizeColumnToHeader(0);
    EXPECT_EQ(list.CheckState(100002), 1);
}

} // namespace
