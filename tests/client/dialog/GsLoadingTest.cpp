// SPDX-License-Identifier: MIT
#include "client/dialog/rules/GsLoading.h"
#include "client/dialog/KindsTest.h"

using namespace Repository;
using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Return;
using testing::SetArgReferee;

namespace {

class GSPage : public KindsTest {
protected:
    void ExpectFetching(int answer) {
        EXPECT_CALL(backend, LoadGS(_, _, TextIs(u"")))
            .WillOnce(DoAll(SetArgReferee<0>(CString(u"<gs/>")), Return(answer)));
    }
    std::string LocalGs() const { return Read(SupportFolder() / "GeneralSettings.xml"); }
};

} // namespace

TEST_F(GSPage, LoadAllMakesTheRepositorysSettingsTheLocalOnesAndSaysSo) {
    const InSequence order;
    ExpectAccessible(1);
    ExpectFetching(1);
    LoadGeneralSettings(manager);
    EXPECT_EQ(LocalGs(), "<gs/>");
    EXPECT_EQ(log.Lines(), Lines{Done(10369)});
}

TEST_F(GSPage, LoadAllSaysThatTheSettingsCouldNotBeFetched) {
    const InSequence order;
    ExpectAccessible(1);
    ExpectFetching(0);
    LoadGeneralSettings(manager);
    EXPECT_EQ(LocalGs(), "(no file)");
    EXPECT_EQ(log.Lines(), Lines{NotDone(10371)});
}

TEST_F(GSPage, LoadAllSaysThatTheSettingsCouldNotBeWritten) {
    std::filesystem::create_directories(SupportFolder() / "GeneralSettings.xml");
    const InSequence order;
    ExpectAccessible(1);
    ExpectFetching(1);
    LoadGeneralSettings(manager);
    EXPECT_EQ(log.Lines(), Lines{NotDone(10371)});
}

TEST_F(GSPage, LoadAllDoesNothingAndSaysNothingWhereTheRepositoryIsNotAccessible) {
    ExpectAccessible(0);
    LoadGeneralSettings(manager);
    EXPECT_EQ(log.Lines(), Lines{});
    EXPECT_EQ(trace.Lines(), TraceOf("DlgTabGS", "CDlgTabGS::OnBnClickedBtnLoadall"));
}
