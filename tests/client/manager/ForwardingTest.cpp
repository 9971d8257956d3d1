// SPDX-License-Identifier: MIT
// What the manager asks the backend on behalf of others.
#include "client/manager/ManagerTest.h"

#include "platform/host/Interruption.h"

#include <stdexcept>

using namespace Repository;
using testing::Return;

using Forwarding = ManagerTest;

TEST_F(Forwarding, TheManagerIsInitializedWithABackend) {
    EXPECT_NE(manager.IsInitialized(), 0);
    EXPECT_TRUE(manager.GetStorage());
}

TEST_F(Forwarding, EveryCallOfInstanceGivesTheOneManager) {
    EXPECT_EQ(CRepositoryStorageManager::Instance(), &manager);
}

TEST_F(Forwarding, TheStorageIsHandedOutShared) {
    const auto storage = manager.GetStorage();
    EXPECT_EQ(manager.GetStorage(), storage);
    EXPECT_EQ(storage.use_count(), 2);
}

TEST_F(Forwarding, TheStorageIsAStorageBackend) {
    EXPECT_CALL(backend, HasConnectionParameters()).WillOnce(Return(7));
    EXPECT_EQ(static_cast<StorageBackend*>(manager.GetStorage().get())->HasConnectionParameters(),
              7);
}

TEST_F(Forwarding, WhetherTheUserMayWriteIsTheBackendsAnswerAsItIs) {
    for (const int answer : {0, 1, 42, -3}) {
        EXPECT_CALL(backend, AmIAdmin()).WillOnce(Return(answer));
        EXPECT_EQ(std::as_const(manager).AmIAdmin(), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(Forwarding, WhetherTheRepositoryIsAccessibleIsTheBackendsAnswerAsItIs) {
    for (const int answer : {0, 1, 42, -3}) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(Return(answer));
        EXPECT_EQ(manager.IsRepositoryAccessible(), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(Forwarding, NothingIsAccessibleWhileTheUserWantsToStop) {
    const Platform::InterruptionGuard guard;
    Platform::RequestInterruption();
    EXPECT_CALL(backend, IsRepositoryAccessible()).Times(0);
    EXPECT_EQ(manager.IsRepositoryAccessible(), 0);
}

TEST_F(Forwarding, NoKindIsSentOnceTheUserWantsToStop) {
    const Platform::InterruptionGuard guard;
    Platform::RequestInterruption();
    EXPECT_CALL(backend, RegisterContent(testing::_, testing::_, testing::_)).Times(0);
    EXPECT_CALL(backend, AddRepositoryFiles(testing::_)).Times(0);
    EXPECT_EQ(manager.SaveAllFOC(1), 0);
    EXPECT_EQ(manager.SaveAllNCFs(), 0);
}

TEST_F(Forwarding, TheStoragesNameIsTheTextOfTheMessageThatTheBackendNames) {
    EXPECT_CALL(backend, GetNameMsgNum()).WillOnce(Return(10379));
    EXPECT_EQ(manager.GetRepositroyStorageName(), Msg(10379));
}

TEST_F(Forwarding, TheMessageProviderGivesTheFamilysTexts) {
    IMsgProvider* const provider = ScriptOfTheProcess().provider;
    ASSERT_TRUE(provider);
    CString buffer = u"before";
    EXPECT_EQ(provider->GetMsg(buffer, 10334), Msg(10334));
    EXPECT_EQ(buffer, Msg(10334));
    workstation.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(provider->GetMsg(buffer, 10334), Msg(10334));
    EXPECT_EQ(buffer, Msg(10334));
}

TEST_F(Forwarding, NoExceptionOfABackendLeaves) {
    const std::runtime_error error("x");
    EXPECT_CALL(backend, AmIAdmin()).WillOnce(testing::Throw(error));
    EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(testing::Throw(error));
    EXPECT_CALL(backend, GetNameMsgNum()).WillOnce(testing::Throw(error));
    EXPECT_EQ(manager.AmIAdmin(), 0);
    EXPECT_EQ(manager.IsRepositoryAccessible(), 0);
    EXPECT_EQ(manager.GetRepositroyStorageName(), u"");
}
