// SPDX-License-Identifier: MIT
// What the connection window does: its test, OK and Cancel, over real repositories.
#include "../RawDatabase.h"
#include "../TestFiles.h"
#include "../WorkspaceLog.h"
#include "WindowTest.h"
#include "support/OrdinaryUser.h"
#include "support/PageSeals.h"

#include <QFileDialog>
#include <fstream>

namespace Storage {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ConnectionWindows : public ConnectionWindowTest {
protected:
    // The report of a test of that file.
    std::vector<std::string> TestOf(const std::string& path, bool create = false) {
        std::vector<std::string> lines;
        Edit([&](const OpenWindow& window) {
            window.Tick(Id::ThisComputer);
            window.Type(Id::File, path);
            if (create)
                window.Tick(Id::Create);
            window.Click(Id::Test);
            lines = window.ReportLines();
        });
        return lines;
    }
    void Write(const std::string& name, const std::string& text) {
        std::ofstream(folder / name, std::ios::binary) << text;
    }
    const std::string notWorking = "This connection cannot be used.";
    WorkspaceLog log;
};

TEST_F(ConnectionWindows, ItShowsTheConnectionInUse) {
    Connect("one.db");
    Edit([&](const OpenWindow& window) {
        EXPECT_EQ(window.Widget()->windowTitle(), "Connection to the repository");
        EXPECT_TRUE(window.IsTicked(Id::ThisComputer));
        EXPECT_EQ(window.Text(Id::File), PathOf("one.db"));
        EXPECT_FALSE(window.IsTicked(Id::Create));
        EXPECT_EQ(window.Report(), "");
    });
}

TEST_F(ConnectionWindows, WithoutSettingsItShowsTheUsersOwnRepository) {
    Edit([&](const OpenWindow& window) {
        EXPECT_EQ(window.Text(Id::File), PathOf("data/StudioZEB/repository.db"));
        EXPECT_EQ(window.Report(), "");
    });
    EXPECT_FALSE(fs::exists(folder / "data"));
}

TEST_F(ConnectionWindows, SettingsThatAreNotUnderstoodAreToldAndWrittenAnewByOk) {
    Platform::CreateFolderChain(settingsFolder);
    Platform::WriteFile(settingsFile, "adress = sqlite:/srv/r.db\n");
    backend.LoadSettings();
    const int edited = Edit([&](const OpenWindow& window) {
        EXPECT_THAT(window.Report(), StartsWith("The settings name no repository"));
        EXPECT_EQ(window.Text(Id::File), PathOf("data/StudioZEB/repository.db"));
        window.Tick(Id::Create);
        window.Click(Platform::kIdOk);
    });
    EXPECT_EQ(edited, 1);
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_THAT(Settings(), testing::EndsWith("address = \n"));
}

// The test

TEST_F(ConnectionWindows, AGoodRepositoryIsToldStepByStep) {
    Connect("one.db");
    const auto lines = TestOf(PathOf("one.db"));
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[0], "✓ OK: The address is understood: " + AddressOf("one.db"));
    EXPECT_EQ(lines[1], "✓ OK: The file is there: " + PathOf("one.db"));
    EXPECT_THAT(lines[2], StartsWith("✓ OK: It can be opened and is a repository"));
    EXPECT_EQ(lines[3], "✓ OK: It is at revision 0. Files in it: 0.");
    EXPECT_EQ(lines[4], "✓ OK: You may read it and write to it.");
    EXPECT_EQ(lines[5], "This connection can be used.");
}

TEST_F(ConnectionWindows, AMissingRepositoryIsToldUnlessItShallBeMade) {
    const auto lines = TestOf(PathOf("a/missing.db"));
    EXPECT_THAT(lines, ElementsAre(StartsWith("✓ OK: The address"),
                                   StartsWith("✗ Failed: There is no repository at"), notWorking));
    const auto made = TestOf(PathOf("a/missing.db"), true);
    EXPECT_THAT(made, ElementsAre(StartsWith("✓ OK: The address"),
                                  "✓ OK: There is no file " + PathOf("a/missing.db") +
                                      " yet. OK makes an empty repository there.",
                                  "This connection can be used."));
    EXPECT_FALSE(fs::exists(folder / "a"));
}

TEST_F(ConnectionWindows, WhatIsNoRepositoryIsToldAndStaysAsItIs) {
    Write("text.db", "short text");
    EXPECT_THAT(TestOf(PathOf("text.db")),
                ElementsAre(StartsWith("✓ OK"), StartsWith("✓ OK"),
                            HasSubstr("✗ Failed: " + PathOf("text.db") + " is another kind"),
                            notWorking));
    std::string text;
    std::getline(std::ifstream(folder / "text.db"), text);
    EXPECT_EQ(text, "short text");
    fs::create_directory(folder / "folder.db");
    EXPECT_THAT(
        TestOf(PathOf("folder.db")),
        ElementsAre(StartsWith("✓ OK"), HasSubstr("is a folder, not a repository"), notWorking));
    RawDatabase(PathOf("other.db")).Run("CREATE TABLE t (a)");
    EXPECT_THAT(TestOf(PathOf("other.db"), true).at(2), HasSubstr("database of another program"));
}

TEST_F(ConnectionWindows, ANewerRepositoryIsTold) {
    Connect("one.db");
    access->Disconnect();
    {
        RawDatabase raw(PathOf("one.db"));
        raw.Run("UPDATE head SET schema_version = 7");
        raw.Run("PRAGMA wal_checkpoint(TRUNCATE)");
    }
    SealPages(PathOf("one.db"));
    EXPECT_THAT(
        TestOf(PathOf("one.db")).at(2),
        HasSubstr("✗ Failed: The repository " + PathOf("one.db") + " has tables of version 7"));
}

TEST_F(ConnectionWindows, ADamagedRepositoryIsTold) {
    Connect("one.db");
    access->Disconnect();
    fs::remove(folder / "one.db-wal");
    fs::remove(folder / "one.db-shm");
    fs::resize_file(folder / "one.db", 20'000);
    EXPECT_THAT(TestOf(PathOf("one.db")).at(2), HasSubstr("is damaged"));
}

TEST_F(ConnectionWindows, AnEmptyPathIsAskedForAtItsField) {
    Edit([&](const OpenWindow& window) {
        window.Type(Id::File, "   ");
        window.Click(Id::Test);
        EXPECT_THAT(window.ReportLines(),
                    ElementsAre("✗ Failed: Name the repository's file, or choose it.", notWorking));
        EXPECT_TRUE(window.Find(Id::File)->hasFocus());
    });
}

TEST_F(ConnectionWindows, WhoMayOnlyReadIsToldSoAndMayUseIt) {
    Connect("one.db");
    access->Disconnect();
    fs::create_directory(folder / "read");
    fs::copy_file(folder / "one.db", folder / "read/one.db");
    fs::permissions(folder / "read/one.db", fs::perms(0444));
    fs::permissions(folder / "read", fs::perms(0555));
    const int edited = Edit([&](const OpenWindow& window) {
        const OrdinaryUserMeanwhile user;
        window.Type(Id::File, PathOf("read/one.db"));
        window.Click(Id::Test);
        EXPECT_THAT(window.ReportLines().at(4), HasSubstr("✓ OK: You may read it, but not"));
        window.Click(Platform::kIdOk);
    });
    EXPECT_EQ(edited, 1);
    fs::permissions(folder / "read", fs::perms(0755));
}

TEST_F(ConnectionWindows, BlanksAroundAPathAreNoPartOfIt) {
    Connect("one.db");
    EXPECT_EQ(TestOf("  " + PathOf("one.db") + " ").back(), "This connection can be used.");
}

// OK and Cancel

TEST_F(ConnectionWindows, OkTakesWhatWorksAndApplyingConnects) {
    Connect("one.db");
    const std::string before = Settings();
    EXPECT_EQ(Edit([&](const OpenWindow& window) {
                  window.Type(Id::File, PathOf("two.db"));
                  window.Tick(Id::Create);
                  window.Click(Platform::kIdOk);
                  EXPECT_FALSE(OpenWindow());
              }),
              1);
    EXPECT_EQ(Settings(), before);
    EXPECT_EQ(AddressInUse(), AddressOf("one.db"));
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_EQ(AddressInUse(), AddressOf("two.db"));
    EXPECT_THAT(Settings(), HasSubstr("address = " + AddressOf("two.db")));
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ConnectionWindows, OkStaysAtWhatDoesNotWorkHoweverOften) {
    Connect("one.db");
    EXPECT_EQ(Edit([&](const OpenWindow& window) {
                  window.Type(Id::File, PathOf("missing.db"));
                  for (int i = 0; i < 3; ++i) {
                      window.Click(Platform::kIdOk);
                      EXPECT_TRUE(OpenWindow());
                      EXPECT_EQ(window.ReportLines().back(), notWorking);
                      EXPECT_TRUE(window.Find(Id::Report)->hasFocus());
                  }
                  // What works then is taken.
                  window.Type(Id::File, PathOf("one.db"));
                  window.Click(Platform::kIdOk);
                  EXPECT_FALSE(OpenWindow());
              }),
              1);
}

TEST_F(ConnectionWindows, CancelChangesNoByteAndKeepsTheConnection) {
    Connect("one.db");
    const std::string settings = Settings();
    for (const bool byKey : {false, true}) {
        EXPECT_EQ(Edit([&](const OpenWindow& window) {
                      window.Type(Id::File, PathOf("two.db"));
                      window.Tick(Id::Create);
                      window.Click(Id::Test);
                      if (byKey)
                          QTest::keyClick(window.Find(Id::File), Qt::Key_Escape);
                      else
                          window.Click(Platform::kIdCancel);
                      EXPECT_FALSE(OpenWindow());
                  }),
                  0);
        EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
        EXPECT_EQ(Settings(), settings);
        EXPECT_EQ(AddressInUse(), AddressOf("one.db"));
        EXPECT_FALSE(fs::exists(folder / "two.db"));
    }
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ConnectionWindows, EnterIsOkInEveryFieldAndInTheReport) {
    Connect("one.db");
    for (const int id : {Id::ThisComputer, Id::File, Id::Create, Id::Report})
        EXPECT_EQ(Edit([&](const OpenWindow& window) {
                      window.Find(id)->setFocus();
                      QTest::keyClick(window.Find(id), Qt::Key_Return);
                      EXPECT_FALSE(OpenWindow()) << id;
                  }),
                  1);
}

TEST_F(ConnectionWindows, TheUsersOwnRepositoryIsKeptAsTheEmptyAddress) {
    Connect("one.db");
    EXPECT_EQ(Edit([&](const OpenWindow& window) {
                  window.Type(Id::File, PathOf("data/StudioZEB/repository.db"));
                  window.Tick(Id::Create);
                  window.Click(Platform::kIdOk);
              }),
              1);
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_THAT(Settings(), testing::EndsWith("address = \n"));
    EXPECT_TRUE(fs::exists(folder / "data/StudioZEB/repository.db"));
}

// Choosing a file

class FileChoosing : public ConnectionWindows {
protected:
    // Presses "Choose..." and answers the chooser; an empty path: cancels it.
    void Choose(const OpenWindow& window, const std::string& path) {
        QTimer::singleShot(0, [&] {
            auto* const chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_TRUE(chooser);
            shownFolder = chooser->directory().absolutePath().toStdString();
            isForSaving = chooser->acceptMode() == QFileDialog::AcceptSave;
            filters = chooser->nameFilters();
            if (path.empty())
                return chooser->reject();
            chooser->selectFile(QString::fromStdString(path));
            QMetaObject::invokeMethod(chooser, "accept");
        });
        window.Click(Id::Choose);
    }

    std::string shownFolder;
    bool isForSaving = false;
    QStringList filters;
};

TEST_F(FileChoosing, TheChosenFileIsTaken) {
    Connect("one.db");
    Connect("other.db");
    Edit([&](const OpenWindow& window) {
        Choose(window, PathOf("one.db"));
        EXPECT_EQ(window.Text(Id::File), PathOf("one.db"));
        EXPECT_EQ(shownFolder, folder.string());
        EXPECT_FALSE(isForSaving);
        EXPECT_EQ(filters, (QStringList{"Repositories (*.db)", "All files (*)"}));
    });
}

TEST_F(FileChoosing, ANewOneIsNamedWhereOneShallBeMade) {
    Connect("one.db");
    Edit([&](const OpenWindow& window) {
        window.Tick(Id::Create);
        Choose(window, PathOf("new.db"));
        EXPECT_TRUE(isForSaving);
        EXPECT_EQ(window.Text(Id::File), PathOf("new.db"));
    });
    EXPECT_FALSE(fs::exists(folder / "new.db"));
}

TEST_F(FileChoosing, WithoutAChoiceTheFieldStays) {
    Connect("one.db");
    Edit([&](const OpenWindow& window) {
        Choose(window, "");
        EXPECT_EQ(window.Text(Id::File), PathOf("one.db"));
    });
}

// Servers

TEST_F(ConnectionWindows, FieldsOfOtherPlacesAreDisabled) {
    const std::vector<int> file = {Id::File, Id::FileLabel, Id::Choose, Id::Create};
    const std::vector<int> server = {Id::Host,     Id::HostLabel,     Id::Port, Id::PortLabel,
                                     Id::Database, Id::DatabaseLabel, Id::User, Id::UserLabel,
                                     Id::Tls,      Id::TlsLabel};
    const std::vector<int> service = {Id::Service, Id::ServiceLabel};
    Edit([&](const OpenWindow& window) {
        const auto expect = [&](int chosen) {
            for (const auto& [radio, ids] :
                 {std::pair(int(Id::ThisComputer), file), std::pair(int(Id::Server), server),
                  std::pair(int(Id::ServiceName), service)})
                for (const int id : ids)
                    EXPECT_EQ(window.IsEnabled(id), radio == chosen) << id;
        };
        expect(Id::ThisComputer);
        for (const int id : {Id::Server, Id::ServiceName, Id::ThisComputer}) {
            window.Tick(id);
            expect(id);
        }
    });
}

TEST_F(ConnectionWindows, AServerThatIsNotThereIsNotTaken) {
    Connect("one.db");
    EXPECT_EQ(Edit([&](const OpenWindow& window) {
                  window.Tick(Id::Server);
                  window.Type(Id::Host, "127.0.0.1");
                  window.Type(Id::Port, "1");
                  window.Type(Id::Database, "zeb");
                  window.Click(Platform::kIdOk);
                  EXPECT_THAT(window.ReportLines(),
                              ElementsAre(HasSubstr("✓ OK: The address is understood: "),
                                          HasSubstr("✗ Failed: "), notWorking));
                  window.Tick(Id::ServiceName);
                  window.Type(Id::Service, "zeb");
                  window.Click(Platform::kIdOk);
                  EXPECT_THAT(window.Report(), HasSubstr("service"));
                  EXPECT_TRUE(OpenWindow());
              }),
              0);
}

TEST_F(ConnectionWindows, WrongFieldsAreNamedAndTheFirstGetsTheFocus) {
    Edit([&](const OpenWindow& window) {
        window.Tick(Id::Server);
        window.Type(Id::Host, "h");
        window.Type(Id::Port, "70000");
        window.Type(Id::User, "ana:secret");
        window.Click(Platform::kIdOk);
        EXPECT_THAT(window.ReportLines(),
                    ElementsAre(StartsWith("✗ Failed: The port is a number from 1 to 65535."),
                                StartsWith("✗ Failed: Write the user's name alone"), notWorking));
        EXPECT_TRUE(window.Find(Id::Port)->hasFocus());
        EXPECT_EQ(window.Report().find("secret"), std::string::npos);
    });
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ConnectionWindows, TheProposedEncryptionFollowsTheServerUntilOneIsChosen) {
    Edit([&](const OpenWindow& window) {
        window.Tick(Id::Server);
        EXPECT_THAT(window.Tls(), StartsWith("verify-full: "));
        window.Type(Id::Host, "localhost");
        EXPECT_THAT(window.Tls(), StartsWith("not set: "));
        window.Type(Id::Host, "db.example");
        EXPECT_THAT(window.Tls(), StartsWith("verify-full: "));
        window.ChooseTls(4);
        EXPECT_THAT(window.Tls(), StartsWith("require: "));
        window.Type(Id::Host, "localhost");
        EXPECT_THAT(window.Tls(), StartsWith("require: "));
    });
}

} // namespace
} // namespace Storage
