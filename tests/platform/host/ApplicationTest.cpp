// SPDX-License-Identifier: MIT
#include "platform/host/Application.h"

#include "platform/host/CommandRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Platform::CommandEntry;
using Platform::FindService;
using Platform::HostMessage;
using Platform::HostResult;
using Platform::kRegisteredCommandsService;
using testing::InSequence;
using testing::Return;
using testing::StrictMock;

namespace {

class EveryHandler : public AcRxDbxApp {
public:
    MOCK_METHOD(HostResult, OnLoad, (void*), (override));
    MOCK_METHOD(HostResult, OnUnload, (void*), (override));
    MOCK_METHOD(HostResult, OnOpenDocument, (void*), (override));
    MOCK_METHOD(HostResult, OnCloseDocument, (void*), (override));
    MOCK_METHOD(HostResult, OnOpenDatabase, (void*), (override));
    MOCK_METHOD(HostResult, OnCloseDatabase, (void*), (override));
    MOCK_METHOD(HostResult, OnQuit, (void*), (override));
    MOCK_METHOD(void, RegisterServerComponents, (), (override));
};

int g_calls = 0;

void Handler() {
    ++g_calls;
}

constexpr CommandEntry kTable[] = {
    {u"APPLICATION_TEST", u"test", u"proba", 0, Platform::kCommandModal, Handler},
    {u"APPLICATION_TEST", u"second", nullptr, 101, 0, Handler},
    {u"APPLICATION_TEST_2", u"test", u"third", 0, 0, Handler},
};

class Module : public AcRxArxApp {
public:
    explicit Module(std::span<const CommandEntry> table) : m_table(table) {}
    ~Module() override { EntryPoint(HostMessage::Unload, nullptr); }

    void RegisterServerComponents() override { ++registrations; }

    int registrations = 0;

protected:
    std::span<const CommandEntry> Commands() const override { return m_table; }
    const Platform::StringResources& Strings() const override { return m_strings; }

private:
    std::span<const CommandEntry> m_table;
    Platform::StringResources m_strings = {{100, u"Sample"}, {101, u"druga"}};
};

Platform::CommandRegistry& Registry() {
    return *FindService(kRegisteredCommandsService);
}

std::size_t CommandCount() {
    return Registry().Commands().size();
}

} // namespace

TEST(Application, EachMessageReachesItsHandlerWithItsPacket) {
    StrictMock<EveryHandler> application;
    int packet = 0;
    InSequence inOrder;
    EXPECT_CALL(application, OnLoad(&packet)).WillOnce(Return(HostResult::Error));
    EXPECT_CALL(application, OnUnload(&packet)).WillOnce(Return(HostResult::Ok));
    EXPECT_CALL(application, OnOpenDocument(&packet)).WillOnce(Return(HostResult::Error));
    EXPECT_CALL(application, OnCloseDocument(&packet)).WillOnce(Return(HostResult::Ok));
    EXPECT_CALL(application, OnOpenDatabase(&packet)).WillOnce(Return(HostResult::Error));
    EXPECT_CALL(application, OnCloseDatabase(&packet)).WillOnce(Return(HostResult::Ok));
    EXPECT_CALL(application, OnQuit(&packet)).WillOnce(Return(HostResult::Error));

    EXPECT_EQ(application.EntryPoint(HostMessage::Load, &packet), HostResult::Error);
    EXPECT_EQ(application.EntryPoint(HostMessage::Unload, &packet), HostResult::Ok);
    EXPECT_EQ(application.EntryPoint(HostMessage::OpenDocument, &packet), HostResult::Error);
    EXPECT_EQ(application.EntryPoint(HostMessage::CloseDocument, &packet), HostResult::Ok);
    EXPECT_EQ(application.EntryPoint(HostMessage::OpenDatabase, &packet), HostResult::Error);
    EXPECT_EQ(application.EntryPoint(HostMessage::CloseDatabase, &packet), HostResult::Ok);
    EXPECT_EQ(application.EntryPoint(HostMessage::Quit, &packet), HostResult::Error);
}

TEST(Application, AMessageThatHasNoHandlerIsAnsweredWithOk) {
    StrictMock<EveryHandler> application;
    for (const std::int32_t code : {-1, 0, 8, 1000})
        EXPECT_EQ(application.EntryPoint(static_cast<HostMessage>(code), nullptr), HostResult::Ok);
}

TEST(Application, TheDefaultHandlersDoNothing) {
    class Plain : public AcRxDbxApp {
        void RegisterServerComponents() override { ADD_FAILURE(); }
    } application;
    for (std::int32_t code = 1; code <= 7; ++code)
        EXPECT_EQ(application.EntryPoint(static_cast<HostMessage>(code), nullptr), HostResult::Ok);
}

TEST(Application, LoadingRegistersTheTableAndTheServerComponents) {
    Module module(kTable);
    EXPECT_EQ(CommandCount(), 0u);
    EXPECT_EQ(module.EntryPoint(HostMessage::Load, nullptr), HostResult::Ok);
    EXPECT_EQ(module.registrations, 1);
    ASSERT_EQ(CommandCount(), 3u);
    const Platform::RegisteredCommand& first = Registry().Commands().front();
    EXPECT_EQ(first.group, u"APPLICATION_TEST");
    EXPECT_EQ(first.globalName, u"test");
    EXPECT_EQ(first.localName, u"proba");
    EXPECT_EQ(first.flags, 1);
    g_calls = 0;
    first.handler();
    EXPECT_EQ(g_calls, 1);
}

TEST(Application, AMissingLocalNameComesFromTheStringResources) {
    Module module(kTable);
    module.EntryPoint(HostMessage::Load, nullptr);
    ASSERT_TRUE(Registry().Find(u"druga"));
    EXPECT_EQ(Registry().Find(u"druga")->globalName, u"second");
}

TEST(Application, ALocalNameThatIsNowhereIsAFailureAndTheOthersAreRegistered) {
    const CommandEntry table[] = {{u"G", u"nameless", nullptr, 999, 0, Handler},
                                  {u"G", u"named", u"named", 0, 0, Handler}};
    Module module(table);
    EXPECT_EQ(module.EntryPoint(HostMessage::Load, nullptr), HostResult::Error);
    EXPECT_EQ(module.registrations, 1);
    EXPECT_FALSE(Registry().Find(u"nameless"));
    EXPECT_TRUE(Registry().Find(u"named"));
}

TEST(Application, UnloadingRemovesEveryGroupOfTheTableAndNoOther) {
    Registry().AddCommand({u"OTHER", u"stays", u"stays", 0, Handler});
    Module module(kTable);
    module.EntryPoint(HostMessage::Load, nullptr);
    EXPECT_EQ(module.EntryPoint(HostMessage::Unload, nullptr), HostResult::Ok);
    ASSERT_EQ(CommandCount(), 1u);
    EXPECT_TRUE(Registry().Find(u"stays"));
    EXPECT_EQ(module.EntryPoint(HostMessage::Unload, nullptr), HostResult::Ok);
    Registry().RemoveGroup(u"OTHER");
}

TEST(Application, AModuleMayBeLoadedAgainAfterItWasUnloaded) {
    Module module(kTable);
    module.EntryPoint(HostMessage::Load, nullptr);
    EXPECT_EQ(module.EntryPoint(HostMessage::Load, nullptr), HostResult::Error);
    EXPECT_EQ(CommandCount(), 3u);
    module.EntryPoint(HostMessage::Unload, nullptr);
    EXPECT_EQ(module.EntryPoint(HostMessage::Load, nullptr), HostResult::Ok);
    EXPECT_EQ(CommandCount(), 3u);
}

TEST(Application, AModuleWithoutCommandsLoads) {
    Module module({});
    EXPECT_EQ(module.EntryPoint(HostMessage::Load, nullptr), HostResult::Ok);
    EXPECT_EQ(CommandCount(), 0u);
}
