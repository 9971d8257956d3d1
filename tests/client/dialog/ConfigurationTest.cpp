// SPDX-License-Identifier: MIT
#include "client/dialog/rules/Configuration.h"
#include "client/dialog/KindsTest.h"
#include "client/util/Trace.h"

#include <stdexcept>

using namespace Repository;
using testing::ElementsAre;
using testing::InSequence;
using testing::Return;

namespace {

class MainDialog : public KindsTest {
protected:
    // Of the line that tells of the administrator's rights.
    std::string LineOfAdmin(int answer) {
        EXPECT_CALL(backend, AmIAdmin()).WillOnce(Return(answer));
        TraceScope scope(kMainDialogSource, 1, "F");
        EXPECT_EQ(configuration.IsAdmin(scope), answer != 0);
        return trace.Lines().back();
    }
    LoadAllActions Actions() {
        return {[this] { actions += "foc "; }, [this] { actions += "ncf "; },
                [this] { actions += "gs "; }, [this] { actions += "catalogues "; }};
    }

    Configuration configuration{manager};
    std::string actions;
};

} // namespace

TEST_F(MainDialog, AsksTheStorageWhetherThereAreConnectionParameters) {
    EXPECT_CALL(backend, HasConnectionParameters())
        .WillOnce(Return(0))
        .WillOnce(Return(1))
        .WillOnce(Return(-1));
    EXPECT_FALSE(configuration.HasConnectionParameters());
    EXPECT_TRUE(configuration.HasConnectionParameters());
    EXPECT_TRUE(configuration.HasConnectionParameters());
}

TEST_F(MainDialog, TracesThatAnAdministratorSitsThere) {
    EXPECT_EQ(LineOfAdmin(1), "DlgNetworkRepositoryConfiguration F Admin mode ON");
}

TEST_F(MainDialog, TakesAnyAnswerButZeroForAnAdministrators) {
    EXPECT_EQ(LineOfAdmin(-7), "DlgNetworkRepositoryConfiguration F Admin mode ON");
}

TEST_F(MainDialog, TracesThatNoAdministratorSitsThere) {
    EXPECT_EQ(LineOfAdmin(0), "DlgNetworkRepositoryConfiguration F Admin mode OFF");
}

TEST_F(MainDialog, EditsTheConnectionAndAppliesItWhateverCameOfTheEditing) {
    for (const int answer : {0, 1}) {
        const InSequence order;
        EXPECT_CALL(backend, EditConnectionParameters()).WillOnce(Return(answer));
        EXPECT_CALL(backend, ApplyConnectionParameters()).WillOnce(Return(answer));
        configuration.EditConnection();
    }
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(MainDialog, LoadsEverythingInItsFixedOrderWithMarkersBetween) {
    Configuration::LoadAll(Actions());
    EXPECT_EQ(actions, "foc ncf gs catalogues ");
    const std::string function = "CDlgNetworkRepositoryConfiguration::OnBnClickedButtonLoadall";
    const std::string start = "DlgNetworkRepositoryConfiguration " + function + " ";
    EXPECT_THAT(trace.Lines(), ElementsAre(start + "Entering function , " + function,
                                           start + "Marker", start + "Marker", start + "Marker",
                                           start + "Exiting function , " + function));
}

TEST_F(MainDialog, AFailureOfOneStepDoesNotStopTheNext) {
    LoadAllActions throwing = Actions();
    for (auto* action : {&throwing.foc, &throwing.ncf, &throwing.gs, &throwing.catalogues})
        *action = [before = *action] {
            before();
            throw std::runtime_error("x");
        };
    Configuration::LoadAll(throwing);
    EXPECT_EQ(actions, "foc ncf gs catalogues ");
}
