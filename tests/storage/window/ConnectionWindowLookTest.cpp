// SPDX-License-Identifier: MIT
// How the connection window looks and what keys reach, in both languages.
#include "WindowTest.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <set>

namespace Storage {
namespace {

constexpr const char* kLanguages[] = {"en", "hr"};

class ConnectionWindowLook : public ConnectionWindowTest {
protected:
    // Runs `look` in the window of each language.
    void InBothLanguages(const std::function<void(const OpenWindow&)>& look) {
        for (const char* language : kLanguages) {
            SCOPED_TRACE(language);
            SetLanguage(language);
            Edit(look);
        }
    }
    static std::vector<QWidget*> ControlsOf(const OpenWindow& window) {
        std::vector<QWidget*> controls;
        for (int id = Id::Where; id <= Id::Report; ++id)
            controls.push_back(window.Find(id));
        controls.push_back(window.Find(Platform::kIdOk));
        controls.push_back(window.Find(Platform::kIdCancel));
        return controls;
    }
    static std::string NameOf(const QWidget* control) {
        return control->objectName().toStdString();
    }
    // The width that the control's text asks for.
    static int TextWidth(const QWidget* control) {
        if (const auto* const label = qobject_cast<const QLabel*>(control))
            return label->buddy() ? label->fontMetrics().horizontalAdvance(label->text()) : 0;
        // Its hint is never narrower than the style's buttons are.
        if (const auto* const button = qobject_cast<const QPushButton*>(control))
            return button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() +
                   button->style()->pixelMetric(QStyle::PM_ButtonMargin) +
                   2 * button->style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
        if (const auto* const group = qobject_cast<const QGroupBox*>(control))
            return group->minimumSizeHint().width();
        if (qobject_cast<const QAbstractButton*>(control) ||
            qobject_cast<const QComboBox*>(control))
            return control->sizeHint().width();
        return 0;
    }
};

TEST_F(ConnectionWindowLook, NothingIsCutOffInAnyFontSize) {
    const QFont before = QApplication::font();
    for (const int points : {7, 9, 14, 20}) {
        SCOPED_TRACE(points);
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        InBothLanguages([](const OpenWindow& window) {
            for (const QWidget* control : ControlsOf(window)) {
                EXPECT_LE(TextWidth(control), control->width()) << NameOf(control);
                EXPECT_GE(control->height(), control->fontMetrics().height()) << NameOf(control);
                EXPECT_TRUE(window.Widget()->rect().contains(control->geometry()))
                    << NameOf(control);
            }
            const auto* const passwords = window.Find<QLabel>(Id::Passwords);
            EXPECT_LE(passwords->heightForWidth(passwords->width()), passwords->height());
            EXPECT_GE(passwords->text().size(), 60);
        });
    }
    QApplication::setFont(before);
}

TEST_F(ConnectionWindowLook, ControlsStandBesideEachOther) {
    Edit([](const OpenWindow& window) {
        auto controls = ControlsOf(window);
        controls.erase(controls.begin()); // the box around the radio buttons
        for (const QWidget* one : controls)
            for (const QWidget* other : controls)
                EXPECT_TRUE(one == other || !one->geometry().intersects(other->geometry()))
                    << NameOf(one) << " " << NameOf(other);
    });
}

TEST_F(ConnectionWindowLook, TextsAreThoseOfTheLanguage) {
    SetLanguage("hr");
    Edit([](const OpenWindow& window) {
        EXPECT_EQ(window.Widget()->windowTitle(), "Veza s repozitorijem");
        const auto text = [&](int id) {
            return window.Find<QAbstractButton>(id)->text().remove('&').toStdString();
        };
        EXPECT_EQ(text(Id::Test), "Ispitaj");
        EXPECT_EQ(text(Platform::kIdOk), "U redu");
        EXPECT_EQ(text(Platform::kIdCancel), "Odustani");
        EXPECT_EQ(text(Id::Create), "Napravi repozitorij ako ga nema");
        window.Click(Id::Test);
        EXPECT_THAT(window.ReportLines(),
                    testing::ElementsAre(testing::StartsWith("✓ U redu: Adresa je razumljiva: "),
                                         testing::StartsWith("✗ Nije uspjelo: Na adresi "),
                                         "Ova se veza ne može koristiti."));
    });
}

TEST_F(ConnectionWindowLook, TheTextsThatNameOtherControlsNameThemAsTheyAre) {
    for (const char* language : kLanguages) {
        SetLanguage(language);
        CString missing;
        EXPECT_NE(messages.GetMsg(missing, 20205).find(Msg(WindowText::Create)), CString::npos);
        EXPECT_NE(Msg(WindowText::NoHost).find(Msg(WindowText::ServiceName)), CString::npos);
        EXPECT_NE(messages.GetMsg(missing, 20204).find(Msg(WindowText::Ok)), CString::npos);
    }
}

TEST_F(ConnectionWindowLook, EveryControlHasAKeyOfItsOwn) {
    InBothLanguages([](const OpenWindow& window) {
        std::set<QString> keys;
        const auto add = [&](const QString& text, const QWidget* control) {
            const auto at = text.indexOf('&');
            ASSERT_GE(at, 0) << NameOf(control);
            EXPECT_TRUE(keys.insert(text.mid(at + 1, 1).toUpper()).second) << NameOf(control);
        };
        for (const QWidget* control : ControlsOf(window)) {
            if (const auto* const button = qobject_cast<const QAbstractButton*>(control))
                add(button->text(), control);
            const auto* const label = qobject_cast<const QLabel*>(control);
            if (label && label->buddy())
                add(label->text(), control);
        }
        EXPECT_EQ(keys.size(), 15u);
    });
}

TEST_F(ConnectionWindowLook, EveryControlWithoutATextIsNamedForAScreenReader) {
    InBothLanguages([](const OpenWindow& window) {
        for (const int id : {Id::File, Id::Host, Id::Port, Id::Database, Id::User, Id::Tls,
                             Id::Service, Id::Report})
            EXPECT_FALSE(window.Find(id)->accessibleName().isEmpty()) << id;
    });
}

TEST_F(ConnectionWindowLook, TabGoesThroughWhatCanBeUsedInTheWindowsOrder) {
    Edit([](const OpenWindow& window) {
        const auto stops = [&] {
            std::vector<int> ids;
            const QWidget* const first = QApplication::focusWidget();
            do {
                ids.push_back(QApplication::focusWidget()->objectName().toInt());
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            } while (QApplication::focusWidget() != first && ids.size() < 30);
            return ids;
        };
        window.Find(Id::ThisComputer)->setFocus();
        EXPECT_THAT(stops(), testing::ElementsAre(Id::ThisComputer, Id::File, Id::Choose,
                                                  Id::Create, Id::Test, Id::Report, Platform::kIdOk,
                                                  Platform::kIdCancel));
        window.Tick(Id::Server);
        window.Find(Id::Server)->setFocus();
        EXPECT_THAT(stops(), testing::ElementsAre(Id::Server, Id::Host, Id::Port, Id::Database,
                                                  Id::User, Id::Tls, Id::Test, Id::Report,
                                                  Platform::kIdOk, Platform::kIdCancel));
        window.Tick(Id::ServiceName);
        window.Find(Id::ServiceName)->setFocus();
        EXPECT_THAT(stops(),
                    testing::ElementsAre(Id::ServiceName, Id::Service, Id::Test, Id::Report,
                                         Platform::kIdOk, Platform::kIdCancel));
    });
}

TEST_F(ConnectionWindowLook, ALargerWindowGivesItsRoomToFieldsAndReport) {
    Edit([](const OpenWindow& window) {
        const QSize file = window.Find(Id::File)->size();
        const QSize report = window.Find(Id::Report)->size();
        const QPoint ok = window.Find(Platform::kIdOk)->pos();
        window.Widget()->resize(window.Widget()->size() + QSize(120, 90));
        EXPECT_EQ(window.Find(Id::File)->size(), file + QSize(120, 0));
        EXPECT_EQ(window.Find(Id::Report)->size(), report + QSize(120, 90));
        EXPECT_EQ(window.Find(Platform::kIdOk)->pos(), ok + QPoint(120, 90));
    });
}

TEST_F(ConnectionWindowLook, OkIsTheDefaultButton) {
    Edit([](const OpenWindow& window) {
        EXPECT_TRUE(window.Find<QPushButton>(Platform::kIdOk)->isDefault());
        EXPECT_FALSE(window.Find<QPushButton>(Platform::kIdCancel)->isDefault());
    });
}

} // namespace
} // namespace Storage
