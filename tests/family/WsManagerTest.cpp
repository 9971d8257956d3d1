// SPDX-License-Identifier: MIT
#include "ZEBXWorkspaceCore/WsManager.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "support/DocumentExample.h"
#include "support/TemporaryFolder.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace ZEBGis::Workspace;
using testing::ElementsAre;

class RecordingSink : public IWsSink {
public:
    void Write(const CWsMessage& message) override { messages.push_back(message); }
    std::vector<CWsMessage> messages;
};

class WsManager : public testing::Test {
protected:
    ~WsManager() override { m_manager->RemoveSink(m_sink); }

    CWsManager* m_manager = CWsManager::Instance();
    boost::shared_ptr<RecordingSink> m_sink = boost::make_shared<RecordingSink>();
};

TEST_F(WsManager, WithoutASinkAMessageIsDropped) {
    m_manager->LogMessage(MessageFailure, u"nobody listens");
    m_manager->AddSink(m_sink);
    EXPECT_TRUE(m_sink->messages.empty());
}

TEST_F(WsManager, EverySinkGetsTheWholeMessage) {
    const auto second = boost::make_shared<RecordingSink>();
    m_manager->AddSink(m_sink);
    m_manager->AddSink(second);
    const int object = 0;
    m_manager->LogMessage(4, u"text", 7, u"name", &object, 9);
    m_manager->RemoveSink(second);
    for (const auto& sink : {m_sink, second}) {
        ASSERT_EQ(sink->messages.size(), 1u);
        const CWsMessage& message = sink->messages[0];
        EXPECT_EQ(message.type, 4);
        EXPECT_EQ(message.text, u"text");
        EXPECT_EQ(message.entityType, 7);
        EXPECT_EQ(message.name, u"name");
        EXPECT_EQ(message.objectId, &object);
        EXPECT_EQ(message.selectionType, 9);
        EXPECT_EQ(message.time.size(), CString(u"2026-11-21T08:05:19Z").size());
    }
}

TEST_F(WsManager, ASinkIsAddedOnceAndGoneAfterRemoval) {
    m_manager->AddSink(m_sink);
    m_manager->AddSink(m_sink);
    m_manager->AddSink(nullptr);
    m_manager->LogMessage(1, u"once");
    m_manager->RemoveSink(m_sink);
    m_manager->LogMessage(1, u"never");
    EXPECT_EQ(m_sink->messages.size(), 1u);
}

TEST_F(WsManager, NullTextsReadAsEmpty) {
    m_manager->AddSink(m_sink);
    m_manager->LogMessage(1, nullptr);
    ASSERT_EQ(m_sink->messages.size(), 1u);
    EXPECT_EQ(m_sink->messages[0].text, u"");
    EXPECT_EQ(m_sink->messages[0].name, u"");
}

class RemovingSink : public RecordingSink {
public:
    void Write(const CWsMessage& message) override {
        RecordingSink::Write(message);
        CWsManager::Instance()->RemoveSink(other);
    }
    boost::shared_ptr<IWsSink> other;
};

TEST_F(WsManager, ASinkMayRemoveASinkWhileItIsWrittenTo) {
    const auto remover = boost::make_shared<RemovingSink>();
    remover->other = m_sink;
    m_manager->AddSink(remover);
    m_manager->AddSink(m_sink);
    m_manager->LogMessage(1, u"first");
    m_manager->LogMessage(1, u"second");
    m_manager->RemoveSink(remover);
    EXPECT_EQ(m_sink->messages.size(), 1u);
    EXPECT_EQ(remover->messages.size(), 2u);
}

std::vector<std::string> LinesOf(const CString& path) {
    std::string bytes;
    EXPECT_FALSE(Platform::ReadFile(path, bytes));
    std::vector<std::string> lines;
    std::istringstream stream(bytes);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

TEST(WsLogFile, EachMessageIsOneLineOfTimeWordAndText) {
    TemporaryFolder folder;
    const CString path = folder.Path() + u"new\\workspace.log";
    CWsLogFile log(path);
    log.Write({u"T1", 1, u"čvor.dwg", 0, u"", nullptr, 0});
    log.Write({u"T2", 2, u"two\r\nlines", 0, u"", nullptr, 0});
    log.Write({u"T3", 4, u"", 0, u"", nullptr, 0});
    log.Write({u"T4", 3, u"other", 0, u"", nullptr, 0});
    EXPECT_THAT(LinesOf(path), ElementsAre("T1\tsuccess\tčvor.dwg", "T2\twarning\ttwo  lines",
                                           "T3\tfailure\t", "T4\t3\tother"));
}

TEST(WsLogFile, TheDocumentsExampleIsWrittenSo) {
    TemporaryFolder folder;
    const CString path = folder.Path() + u"workspace.log";
    CWsLogFile log(path);
    log.Write({u"2026-11-21T08:05:19Z", 1, u"čvor 1.dwg", 0, u"", nullptr, 0});
    log.Write({u"2026-11-21T08:05:20Z", 2, u"No file matches the pattern (\\label\\*.dwg)", 0, u"",
               nullptr, 0});
    log.Write({u"2026-11-21T08:05:21Z", 4, u"Could not be sent to the repository - Labels", 0, u"",
               nullptr, 0});
    std::string bytes;
    EXPECT_FALSE(Platform::ReadFile(path, bytes));
    EXPECT_EQ(bytes, DocumentExample("workspace-log") + "\n");
}

TEST(WsLogFile, AFileThatCannotBeWrittenIsGivenUpSilently) {
    TemporaryFolder folder;
    Platform::CreateFolderChain(folder.Path() + u"workspace.log");
    CWsLogFile log(folder.Path() + u"workspace.log");
    log.Write({u"T1", 1, u"text", 0, u"", nullptr, 0});
    EXPECT_EQ(Platform::KindOfPath(folder.Path() + u"workspace.log"), Platform::PathKind::Folder);
}

} // namespace
