// SPDX-License-Identifier: MIT
// What the tests of the dialog start from: a manager of which the kinds are the test's own,
// loaded or sent with a call of the backend each.
#pragma once

#include "client/manager/ManagerTest.h"
#include "client/manager/TraceLines.h"

class KindsTest : public ManagerTest {
protected:
    KindsTest() : m_ncfKinds(manager.GetNCFMetadata()), m_focKinds(manager.GetFOCMetadata()) {
        ForgetKinds();
    }

    static constexpr int kOptional = 1;

    void RegisterBuiltInKinds() {
        manager.GetNCFMetadata() = m_ncfKinds;
        manager.GetFOCMetadata() = m_focKinds;
    }

    void RegisterNCF(const char16_t* id, int msgNum, int optional = 0) {
        manager.RegisterNCFMetadata(boost::make_shared<Repository::CNCFMetadata>(
            id, msgNum, Repository::BaseFolderSupport, u"ncf", Repository::NCFTypePattern, u"*.dwg",
            optional));
    }
    boost::shared_ptr<Repository::CFOCMetadata> RegisterFOC(const char16_t* id, int msgNum,
                                                            int optional = 0) {
        const auto kind = boost::make_shared<Repository::CFOCMetadata>(
            id, msgNum, Repository::BaseFolderSupport, u"foc", u"", optional);
        manager.RegisterFOCMetadata(kind);
        return kind;
    }

    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(testing::Return(answer));
    }
    // A kind of that content is loaded; the repository has no file of it.
    void ExpectLoading(int content, const char16_t* id) {
        EXPECT_CALL(backend, GetRepositoryFileIds(content, TextIs(id), testing::_))
            .WillOnce(testing::Return(1));
    }
    // A kind of that content is sent, as far as the storage lets it.
    void ExpectSending(int content, const char16_t* id, int answer) {
        EXPECT_CALL(backend, RegisterContent(content, TextIs(id), testing::_))
            .WillOnce(testing::Return(answer));
    }

    static WorkspaceLines::Line Done(int number) { return {1, Msg(number)}; }
    static WorkspaceLines::Line NotDone(int number) { return {4, Msg(number)}; }

    // The two lines of a traced function that traces nothing else.
    static std::vector<std::string> TraceOf(const std::string& source,
                                            const std::string& function) {
        const std::string start = source + " " + function + " ";
        return {start + "Entering function , " + function,
                start + "Exiting function , " + function};
    }

    TraceLines trace{workstation};

private:
    const Repository::CRepositoryStorageManager::NCFKinds m_ncfKinds;
    const Repository::CRepositoryStorageManager::FOCKinds m_focKinds;
};
