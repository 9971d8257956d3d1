// SPDX-License-Identifier: MIT
// The module as the host meets it: loaded from its file and entered by its one entry.
#include "client/manager/Installation.h"
#include "client/manager/ScriptedPlugin.h"

#include "platform/host/CommandRegistry.h"
#include "platform/os/Module.h"

#include <gtest/gtest.h>

using Platform::HostMessage;
using Platform::HostResult;

namespace {

class ClientModule : public testing::Test {
protected:
    ~ClientModule() override { Send(HostMessage::Unload); }

    HostResult Send(HostMessage message) const {
        return m_entry ? m_entry(message, nullptr) : HostResult::Error;
    }
    static std::size_t CommandCount() { return Registry().Commands().size(); }
    static Platform::CommandRegistry& Registry() {
        return *Platform::FindService(u"ACAD_REGISTERED_COMMANDS");
    }

    Installation installation;

private:
    AcrxEntryPoint m_entry = reinterpret_cast<AcrxEntryPoint>(Platform::FindExport(
        Platform::LoadModule(Platform::PathFromNative(ZEBX_CLIENT_MODULE)), "acrxEntryPoint"));
};

} // namespace

TEST_F(ClientModule, RegistersItsCommandAtLoad) {
    ASSERT_EQ(CommandCount(), 0U);
    EXPECT_EQ(Send(HostMessage::Load), HostResult::Ok);

    ASSERT_EQ(CommandCount(), 1U);
    const auto command = Registry().Find(u"test");
    ASSERT_TRUE(command);
    EXPECT_EQ(command->group, u"ZEBXRepositoryClient");
    EXPECT_EQ(command->globalName, u"test");
    EXPECT_EQ(command->localName, u"test");
    EXPECT_EQ(command->flags, Platform::kCommandModal);
    EXPECT_TRUE(command->handler);
}

TEST_F(ClientModule, RemovesItsCommandAtUnload) {
    Send(HostMessage::Load);
    EXPECT_EQ(Send(HostMessage::Unload), HostResult::Ok);
    EXPECT_EQ(CommandCount(), 0U);
}

TEST_F(ClientModule, LeavesTheCommandsOfOthersAtUnload) {
    Registry().AddCommand({u"OTHERS", u"test", u"test", 1, [] {}});
    Send(HostMessage::Load);
    Send(HostMessage::Unload);

    ASSERT_EQ(CommandCount(), 1U);
    EXPECT_EQ(Registry().Commands().front().group, u"OTHERS");
    Registry().RemoveGroup(u"OTHERS");
}

TEST_F(ClientModule, CanBeLoadedAgainAfterUnload) {
    Send(HostMessage::Load);
    Send(HostMessage::Unload);
    EXPECT_EQ(Send(HostMessage::Load), HostResult::Ok);
    EXPECT_EQ(CommandCount(), 1U);
}

TEST_F(ClientModule, AnswersEveryOtherMessageWithSuccessAndDoesNothing) {
    Send(HostMessage::Load);
    for (const HostMessage message :
         {HostMessage::OpenDocument, HostMessage::CloseDocument, HostMessage::OpenDatabase,
          HostMessage::CloseDatabase, HostMessage::Quit, HostMessage(0), HostMessage(4711)})
        EXPECT_EQ(Send(message), HostResult::Ok);
    EXPECT_EQ(CommandCount(), 1U);
}

TEST_F(ClientModule, BuildsNoStorageManagerAtLoad) {
    PluginScript script;
    int steps = 0;
    script.onStep = [&](const char*) { ++steps; };
    const auto plugin = Platform::LoadModule(
        installation.Add(ZEBX_SCRIPTED_PLUGIN, "ZEBXRepositoryClientPlugin_Scripted.arx"));
    const auto setScript =
        reinterpret_cast<SetPluginScriptFunction>(Platform::FindExport(plugin, "SetPluginScript"));
    ASSERT_TRUE(setScript);
    setScript(&script);

    Send(HostMessage::Load);
    Send(HostMessage::OpenDocument);
    Send(HostMessage::Unload);

    EXPECT_EQ(steps, 0);
    setScript(nullptr);
}
