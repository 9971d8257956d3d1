// SPDX-License-Identifier: MIT
// What the transfer of several selections makes of what happens to one of them.
#include "app/Transfer.h"
#include "InProcess.h"
#include "support/InAChildProcess.h"
#include "support/WorkspaceLines.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

using namespace App;
using namespace ZEBGis::Workspace;
using testing::Contains;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

namespace {

const std::vector<Selected> kThree = {{Group::FOC, {}}, {Group::NCF, {}}, {Group::GS, {}}};

class Transfers : public AppTest::InProcess {
protected:
    // Moves the three groups as `move` says over a repository of this workstation's own.
    // To be called in a child process, where the manager may be born.
    TransferResult Move(const std::function<Outcome(const Selected&)>& move) {
        EXPECT_EQ(RunHere({"connect", "--create"}).status, 0);
        const auto counter = boost::make_shared<CountingSink>();
        const SinkGuard guard(counter);
        std::istringstream in;
        std::ostringstream out;
        std::ostringstream err;
        Json result;
        TerminalSink terminal(err, {});
        Session session{in, out, terminal, *counter, result};
        return Transfer(session, RequireStorage(), kThree, [&](const Selected& selected) {
            moved.push_back(WordFor(selected));
            return move(selected);
        });
    }

    AppTest::fs::path Repository() const {
        return workstation.Folder().Native() / "data/StudioZEB/repository.db";
    }

    std::vector<CString> moved;
};

TEST_F(Transfers, EachSelectionsLinesAreCounted) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        const TransferResult result = Move([](const Selected& selected) {
            for (int i = 0; i <= static_cast<int>(selected.group); ++i)
                Log(MessageSuccess, u"file");
            return Outcome::Done;
        });
        EXPECT_THAT(moved, ElementsAre(u"foc", u"ncf", u"gs"));
        ASSERT_THAT(result.selections, SizeIs(3));
        EXPECT_EQ(result.selections[0].files, 1);
        EXPECT_EQ(result.selections[2].files, 3);
        EXPECT_EQ(result.Status(), ExitStatus::Done);
    }));
}

TEST_F(Transfers, AFailureLineIsAFailureWhateverTheResult) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        const TransferResult result = Move([](const Selected& selected) {
            if (selected.group == Group::NCF)
                Log(MessageFailure, u"NULL File");
            return Outcome::Done;
        });
        EXPECT_EQ(result.selections[1].failures, 1);
        EXPECT_EQ(result.Status(), ExitStatus::SomeFailed);
    }));
}

TEST_F(Transfers, TheOthersAreMovedAfterAFailure) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        const TransferResult result = Move([](const Selected& selected) {
            return selected.group == Group::FOC ? Outcome::FailedHere : Outcome::Done;
        });
        EXPECT_THAT(moved, SizeIs(3));
        EXPECT_EQ(result.Status(), ExitStatus::LocalFile);
    }));
}

TEST_F(Transfers, AnOlderProblemIsNotTheirs) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        ASSERT_EQ(RunHere({"connect", "--create"}).status, 0);
        // Refused by the storage, and nobody asked why.
        EXPECT_EQ(RequireStorage().Backend().DeleteRepositoryItem(u"TAG", u"nothing"), 0);
        const TransferResult result = Move([](const Selected&) { return Outcome::FailedHere; });
        EXPECT_EQ(result.Status(), ExitStatus::LocalFile);
    }));
}

TEST_F(Transfers, WhenTheRepositoryGoesAwayTheRestIsNotTriedAndTheUserIsTold) {
    EXPECT_TRUE(PassesInAChildProcess([this] {
        const WorkspaceLines lines;
        const TransferResult result = Move([this](const Selected&) {
            AppTest::fs::remove(Repository());
            return Outcome::Done;
        });
        EXPECT_THAT(moved, ElementsAre(u"foc"));
        EXPECT_EQ(result.Status(), ExitStatus::NotReachable);
        EXPECT_THAT(lines.Lines(),
                    Contains(Pair(MessageFailure, u"The repository can no longer be reached; what "
                                                  u"is left was not moved.")));
    }));
}

} // namespace
