// SPDX-License-Identifier: MIT
// Local files that are there and cannot be read: a push says so and sends the others.
#include "ConnectedStation.h"
#include "Content.h"

#include <gmock/gmock.h>
#include <unistd.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

class UnreadFiles : public ConnectedStation {
protected:
    UnreadFiles() {
        Write(station.Support() / "nodes/good.dwg", "good");
        Write(station.Support() / "nodes/locked.dwg", "locked");
        Write(station.Support() / "GeneralSettings.xml", "<gs/>");
        if (geteuid() != 0)
            return;
        for (const auto& entry : fs::recursive_directory_iterator(station.Folder()))
            fs::permissions(entry.path(), entry.is_directory() ? fs::perms::all : fs::perms(0666));
    }
    // The superuser may read everything.
    Ended Run(const std::vector<std::string>& arguments) const {
        return geteuid() == 0 ? station.ZebxAsNobody(arguments) : station.Zebx(arguments);
    }
};

} // namespace

TEST_F(UnreadFiles, AreNamedWithTheReasonAndTheOthersAreSent) {
    fs::permissions(station.Support() / "nodes/locked.dwg", fs::perms(0));
    const Ended run = Run({"push", "ncf:002_NODE"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("Failure: "),
                               HasSubstr((station.Support() / "nodes/locked.dwg").string()),
                               HasSubstr("Permission denied")));
    EXPECT_THAT(Run({"ls"}).out, AllOf(HasSubstr("good.dwg"), Not(HasSubstr("locked.dwg"))));
}

TEST_F(UnreadFiles, AFolderIsNamedWithTheReason) {
    fs::permissions(station.Support() / "nodes", fs::perms(0));
    const Ended run = Run({"push", "ncf:002_NODE"});
    EXPECT_NE(run.status, 0) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr((station.Support() / "nodes").string() + "/*.dwg"),
                               HasSubstr("Permission denied")));
    fs::permissions(station.Support() / "nodes", fs::perms::all);
}

TEST_F(UnreadFiles, GeneralSettingsAreNoWarningButAFailure) {
    fs::permissions(station.Support() / "GeneralSettings.xml", fs::perms(0));
    const Ended run = Run({"push", "gs"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("GeneralSettings.xml"), HasSubstr("Permission denied")));
}
