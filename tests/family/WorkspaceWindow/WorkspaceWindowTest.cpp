// SPDX-License-Identifier: MIT
// The window as its module shows it, on Qt's offscreen platform, used with mouse and keys.
#include "ZEBXWorkspaceCore/WsManager.h"

#include "platform/os/File.h"
#include "platform/os/UserSettings.h"
#include "platform/text/Utf8.h"
#include "platform/window/Dialog.h"
#include "support/Workstation.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

namespace {

using namespace ZEBGis::Workspace;
using testing::HasSubstr;

constexpr int kLines = 101;
constexpr int kSuccesses = 102;
constexpr int kWarnings = 103;
constexpr int kFailures = 104;
constexpr int kCopy = 105;
constexpr int kSave = 106;
constexpr int kOutcome = 107;
constexpr int kClose = Platform::kIdCancel;

QWidget* WindowTitled(const QString& title) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->windowTitle() == title)
            return window;
    }
    return nullptr;
}

// A process has one such window, which keeps its lines: each test looks at its own ones, behind
// those of the tests before it.
class LogWindow : public testing::Test {
protected:
    void SetUp() override {
        CString reason;
        ASSERT_EQ(manager->ShowWindow(&reason), 1) << Platform::ToUtf8(reason);
        window = WindowTitled("Workspace log");
        ASSERT_TRUE(window);
        list = Control<QAbstractItemView>(kLines);
        for (const int box : {kSuccesses, kWarnings, kFailures})
            Tick(box, true);
        list->clearSelection();
        before = Rows();
    }

    template<class Widget>
    Widget* Control(int id) const {
        return window->findChild<Widget*>(QString::number(id));
    }
    void Tick(int id, bool isTicked) const {
        auto* const box = Control<QCheckBox>(id);
        if (box->isChecked() != isTicked)
            QTest::keyClick(box, Qt::Key_Space);
        ASSERT_EQ(box->isChecked(), isTicked);
    }
    void Press(int id) const { QTest::mouseClick(Control<QPushButton>(id), Qt::LeftButton); }
    int Rows() const { return list->model()->rowCount(); }
    std::string Cell(int row, int column) const {
        return list->model()->index(row, column).data().toString().toStdString();
    }
    bool HasIcon(int row, int column) const {
        return list->model()->index(row, column).data(Qt::DecorationRole).isValid();
    }
    std::string TextOf(int id) const {
        return Control<QPlainTextEdit>(id)->toPlainText().toStdString();
    }
    std::string Clipboard() const { return QGuiApplication::clipboard()->text().toStdString(); }
    // The list takes the lines, and then lays them out.
    static void Settle() {
        QApplication::processEvents();
        QApplication::processEvents();
    }
    void Log(std::int32_t type, const char16_t* text) const {
        manager->LogMessage(type, text);
        QApplication::processEvents(); // the window shows lines when it comes to it
    }

    // Chooses that file in the chooser that the next press opens.
    static void ChooseNext(const QString& path) {
        QTimer::singleShot(0, [path] {
            auto* const chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(chooser);
            chooser->findChild<QLineEdit*>("fileNameEdit")->setText(path);
            QMetaObject::invokeMethod(chooser, "accept");
        });
    }

    CWsManager* manager = CWsManager::Instance();
    QWidget* window = nullptr;
    QAbstractItemView* list = nullptr;
    int before = 0;
};

TEST_F(LogWindow, ShowsTimeKindAndTextOfEachLineThatComes) {
    Log(1, u"čvor.dwg");
    Log(2, u"two\r\nlines");
    Log(4, u"bad");
    ASSERT_EQ(Rows(), before + 3);
    EXPECT_THAT(Cell(before, 0), testing::MatchesRegex("[0-9][0-9]:[0-9][0-9]:[0-9][0-9]"));
    EXPECT_EQ(Cell(before, 1), "Success");
    EXPECT_EQ(Cell(before, 2), "čvor.dwg");
    EXPECT_EQ(Cell(before + 1, 1), "Warning");
    EXPECT_EQ(Cell(before + 1, 2), "two  lines");
    EXPECT_EQ(Cell(before + 2, 1), "Failure");
    for (int row = before; row < before + 3; ++row) {
        EXPECT_TRUE(HasIcon(row, 1));
        EXPECT_FALSE(HasIcon(row, 0));
    }
}

TEST_F(LogWindow, TheBoxesCountTheirKindsAndHideThem) {
    Log(1, u"good");
    Log(2, u"careful");
    Log(4, u"bad");
    const auto count = [this](int id) {
        return Control<QCheckBox>(id)->text().remove('&').section(' ', 1).toInt();
    };
    const int successes = count(kSuccesses);
    const int failures = count(kFailures);
    EXPECT_EQ(successes + count(kWarnings) + failures, Rows());
    const int all = Rows();
    Tick(kSuccesses, false);
    EXPECT_EQ(Rows(), all - successes);
    EXPECT_EQ(Cell(Rows() - 1, 2), "bad");
    Log(1, u"unseen");
    EXPECT_EQ(Rows(), all - successes);
    EXPECT_EQ(count(kSuccesses), successes + 1);
    Tick(kFailures, false);
    EXPECT_EQ(Cell(Rows() - 1, 2), "careful");
    Tick(kSuccesses, true);
    EXPECT_EQ(Cell(Rows() - 1, 2), "unseen");
    EXPECT_EQ(Rows(), all + 1 - failures);
}

TEST_F(LogWindow, CopiesTheMarkedLinesAsTheyStandInTheLogFile) {
    Log(1, u"first");
    Log(4, u"second");
    Log(2, u"third");
    const auto at = [this](int row) {
        list->scrollTo(list->model()->index(row, 2));
        return list->visualRect(list->model()->index(row, 2)).center();
    };
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at(before));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier, at(before + 2));
    Press(kCopy);
    EXPECT_THAT(Clipboard(),
                testing::MatchesRegex("[-0-9:TZ]+\tsuccess\tfirst\n[-0-9:TZ]+\twarning\tthird\n"));
    EXPECT_EQ(TextOf(kOutcome), "Lines copied: 2.");
}

TEST_F(LogWindow, CopiesAllThatAreShownWhenNoneIsMarked) {
    Log(4, u"bad");
    Log(1, u"good");
    Tick(kSuccesses, false);
    Tick(kWarnings, false);
    Press(kCopy);
    EXPECT_THAT(Clipboard(), testing::EndsWith("\tfailure\tbad\n"));
    EXPECT_THAT(Clipboard(), Not(HasSubstr("success")));
}

TEST_F(LogWindow, SavesTheSameLinesThatTheLogFileGot) {
    const TemporaryFolder folder;
    const auto file = boost::shared_ptr<IWsSink>(new CWsLogFile(folder.Path() + u"workspace.log"));
    manager->AddSink(file);
    Log(1, u"čvor.dwg");
    Log(2, u"careful\nhere");
    manager->RemoveSink(file);
    for (int row = before; row < Rows(); ++row)
        list->selectionModel()->select(list->model()->index(row, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    const auto path = folder.Native() / "saved.log";
    ChooseNext(QString::fromStdString(path.string()));
    Press(kSave);
    EXPECT_EQ(TextOf(kOutcome), "Saved as " + path.string() + ", lines: 2.");
    std::string logged;
    std::string saved;
    ASSERT_FALSE(Platform::ReadFile(folder.Path() + u"workspace.log", logged));
    ASSERT_FALSE(Platform::ReadFile(folder.Path() + u"saved.log", saved));
    EXPECT_EQ(saved, logged);
}

TEST_F(LogWindow, TellsInTheWindowWhyAFileWasNotSaved) {
    const TemporaryFolder folder;
    Platform::CreateFolderChain(folder.Path() + u"closed");
    const auto path = folder.Native() / "nowhere/saved.log";
    ChooseNext(QString::fromStdString(path.string()));
    Press(kSave);
    EXPECT_THAT(TextOf(kOutcome), HasSubstr(path.string() + " was not saved: "));
    EXPECT_TRUE(Control<QPlainTextEdit>(kOutcome)->isVisible());
}

TEST_F(LogWindow, AChooserThatIsLeftSavesNothing) {
    const std::string outcome = TextOf(kOutcome);
    QTimer::singleShot(0, [] {
        auto* const chooser = QApplication::activeModalWidget();
        ASSERT_TRUE(chooser);
        QTest::keyClick(chooser, Qt::Key_Escape);
    });
    Press(kSave);
    EXPECT_EQ(TextOf(kOutcome), outcome);
}

TEST_F(LogWindow, FollowsTheEndWhileItIsInSight) {
    for (int line = 0; line < 100; ++line)
        manager->LogMessage(1, u"a line");
    Settle();
    auto* const bar = list->verticalScrollBar();
    EXPECT_EQ(bar->value(), bar->maximum());
    bar->setValue(5);
    for (int line = 0; line < 100; ++line)
        manager->LogMessage(1, u"a line");
    Settle();
    EXPECT_EQ(bar->value(), 5);
    bar->setValue(bar->maximum());
    Log(1, u"the last line");
    Settle();
    EXPECT_EQ(bar->value(), bar->maximum());
}

TEST_F(LogWindow, GrowsWithItsList) {
    const QSize listBefore = list->size();
    const QPoint closeBefore = Control<QPushButton>(kClose)->pos();
    window->resize(window->size() + QSize(100, 80));
    QApplication::processEvents();
    EXPECT_EQ(list->size(), listBefore + QSize(100, 80));
    EXPECT_EQ(Control<QPushButton>(kClose)->pos(), closeBefore + QPoint(100, 80));
    window->resize(window->size() - QSize(100, 80));
}

TEST_F(LogWindow, ClosedItKeepsItsLinesAndCollectsMoreAndComesBackWhereItWas) {
    window->move(37, 41);
    Log(1, u"before");
    Press(kClose);
    EXPECT_FALSE(window->isVisible());
    Log(1, u"meanwhile");
    EXPECT_EQ(manager->ShowWindow(), 1);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->pos(), QPoint(37, 41));
    EXPECT_EQ(Cell(Rows() - 2, 2), "before");
    EXPECT_EQ(Cell(Rows() - 1, 2), "meanwhile");
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    manager->ShowWindow();
    window->close();
    EXPECT_FALSE(window->isVisible());
    manager->ShowWindow();
    manager->HideWindow();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(LogWindow, EveryControlHasANameAndIsReachedByTheTabulator) {
    Log(1, u"a line");
    Press(kCopy); // shows the outcome
    window->activateWindow();
    list->setFocus();
    QApplication::processEvents();
    for (const int id :
         {kLines, kSuccesses, kWarnings, kFailures, kOutcome, kCopy, kSave, kClose}) {
        auto* const widget = Control<QWidget>(id);
        EXPECT_EQ(QApplication::focusWidget(), widget) << id;
        const auto* const button = qobject_cast<QAbstractButton*>(widget);
        EXPECT_FALSE(button ? button->text().isEmpty() : widget->accessibleName().isEmpty()) << id;
        EXPECT_TRUE(!button || button->text().contains('&')) << id;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
}

TEST_F(LogWindow, AHundredThousandLinesAreShownAndTheOldestGoWithAWord) {
    for (int line = 0; line < 100'001; ++line)
        manager->LogMessage(1, u"a line");
    QApplication::processEvents();
    EXPECT_GT(Rows(), 89'000);
    EXPECT_LE(Rows(), 100'000);
    EXPECT_EQ(TextOf(kOutcome),
              "At most 100000 lines are kept here. The older ones are in the log file.");
    Log(4, u"the newest");
    EXPECT_EQ(Cell(Rows() - 1, 2), "the newest");
}

} // namespace
