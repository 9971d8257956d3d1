// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/ModuleConfiguration.h"

#include "platform/os/File.h"
#include "platform/text/Utf8.h"
#include "support/Workstation.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

using ZEBGis::CModuleConfiguration;

class ModuleConfiguration : public testing::Test {
protected:
    CString Read(const CString& name) const {
        std::string bytes;
        EXPECT_FALSE(Platform::ReadFile(m_station.Support() + name, bytes));
        return Platform::FromUtf8(bytes);
    }

    Workstation m_station;
    CModuleConfiguration* m_configuration = CModuleConfiguration::Instance();
};

TEST_F(ModuleConfiguration, FoldersEndWithASeparatorAndTheirKeysIgnoreCase) {
    EXPECT_EQ(m_configuration->GetPath(u"support"), m_station.Support());
    EXPECT_EQ(m_configuration->GetPath(u"INSTALL"), m_configuration->GetPath(u"install"));
    EXPECT_EQ(m_configuration->GetPath(u"install").back(), u'\\');
}

TEST_F(ModuleConfiguration, AnUnknownOrNullKeyGivesNoFolder) {
    EXPECT_EQ(m_configuration->GetPath(u"temp"), u"");
    EXPECT_EQ(m_configuration->GetPath(nullptr), u"");
}

TEST_F(ModuleConfiguration, MessagesComeInTheUsersLanguage) {
    EXPECT_EQ(m_configuration->GetMsg(10314), u"Nodes");
    m_station.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(m_configuration->GetMsg(10314), u"Čvorovi");
}

TEST_F(ModuleConfiguration, AnUnknownMessageIsNamedByItsNumber) {
    EXPECT_EQ(m_configuration->GetMsg(99999), u"message 99999");
    EXPECT_EQ(m_configuration->GetMsg(-1), u"message -1");
    m_station.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(m_configuration->GetMsg(99999), u"poruka 99999");
}

TEST_F(ModuleConfiguration, AMissingMessageTableStillNamesTheNumber) {
    m_station.Set("ZEBX_INSTALL", m_station.Folder().Native().string());
    EXPECT_EQ(m_configuration->GetMsg(10314), u"message 10314");
}

TEST_F(ModuleConfiguration, OptionalKindsAreOffUntilTheSettingsNameThem) {
    EXPECT_EQ(m_configuration->IsMetadataIdEnabled(u"008_GPE"), 0);
    m_station.WriteSettings("[kinds]\nenabled = 001_PUMPCURVE ,008_GPE,\n");
    EXPECT_NE(m_configuration->IsMetadataIdEnabled(u"008_GPE"), 0);
    EXPECT_NE(m_configuration->IsMetadataIdEnabled(u"001_PUMPCURVE"), 0);
    EXPECT_EQ(m_configuration->IsMetadataIdEnabled(u"008_gpe"), 0);
    EXPECT_EQ(m_configuration->IsMetadataIdEnabled(u"008"), 0);
    EXPECT_EQ(m_configuration->IsMetadataIdEnabled(u""), 0);
    EXPECT_EQ(m_configuration->IsMetadataIdEnabled(nullptr), 0);
}

TEST_F(ModuleConfiguration, WithoutGeneralSettingsTheTextIsEmpty) {
    EXPECT_EQ(m_configuration->GetCurrentGSXML(), u"");
}

TEST_F(ModuleConfiguration, SavedGeneralSettingsAreTheCurrentOnes) {
    const CString xml = u"<gs name=\"Vodovod Čačinci – šđćž\">\r\n</gs>\n";
    EXPECT_EQ(m_configuration->ForceSaveGSLocal(xml.c_str(), nullptr), 1);
    EXPECT_EQ(m_configuration->GetCurrentGSXML(), xml);
    EXPECT_FALSE(Platform::PathExists(m_station.Support() + u"GeneralSettings.previous.xml"));
}

TEST_F(ModuleConfiguration, ThePreviousGeneralSettingsStayBesideTheNew) {
    m_configuration->ForceSaveGSLocal(u"<first/>", nullptr);
    EXPECT_EQ(m_configuration->ForceSaveGSLocal(u"<second/>", nullptr), 1);
    EXPECT_EQ(Read(u"GeneralSettings.xml"), u"<second/>");
    EXPECT_EQ(Read(u"GeneralSettings.previous.xml"), u"<first/>");
}

TEST_F(ModuleConfiguration, SavingTheSameGeneralSettingsKeepsThePreviousOnes) {
    m_configuration->ForceSaveGSLocal(u"<first/>", nullptr);
    m_configuration->ForceSaveGSLocal(u"<second/>", nullptr);
    EXPECT_EQ(m_configuration->ForceSaveGSLocal(u"<second/>", nullptr), 1);
    EXPECT_EQ(Read(u"GeneralSettings.previous.xml"), u"<first/>");
}

TEST_F(ModuleConfiguration, EmptyGeneralSettingsCanBeSaved) {
    m_configuration->ForceSaveGSLocal(u"<first/>", nullptr);
    EXPECT_EQ(m_configuration->ForceSaveGSLocal(nullptr, nullptr), 1);
    EXPECT_EQ(m_configuration->GetCurrentGSXML(), u"");
    EXPECT_EQ(Read(u"GeneralSettings.previous.xml"), u"<first/>");
}

TEST_F(ModuleConfiguration, GeneralSettingsThatCannotBeWrittenLeaveTheOldOnes) {
    m_configuration->ForceSaveGSLocal(u"<first/>", nullptr);
    // A folder where the copy of the previous settings has to go.
    Platform::CreateFolderChain(m_station.Support() + u"GeneralSettings.previous.xml\\x");
    EXPECT_EQ(m_configuration->ForceSaveGSLocal(u"<second/>", nullptr), 0);
    EXPECT_EQ(m_configuration->GetCurrentGSXML(), u"<first/>");
}

TEST_F(ModuleConfiguration, NothingIsLeftBesideTheGeneralSettings) {
    m_configuration->ForceSaveGSLocal(u"<first/>", nullptr);
    m_configuration->ForceSaveGSLocal(u"<second/>", nullptr);
    int files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(Platform::NativePath(m_station.Support())))
        files += entry.is_regular_file();
    EXPECT_EQ(files, 2);
}

TEST_F(ModuleConfiguration, BytesThatAreNoTextSurviveReadingAndSaving) {
    const std::string bytes = "<gs>\xE8\xFF</gs>";
    Platform::CreateFolderChain(m_station.Support());
    Platform::WriteFile(m_station.Support() + u"GeneralSettings.xml", bytes);
    const CString xml = m_configuration->GetCurrentGSXML();
    EXPECT_FALSE(Platform::IsWellFormed(xml));
    EXPECT_EQ(Platform::ToUtf8(xml), bytes);
}

TEST_F(ModuleConfiguration, AZeroByteDoesNotEndTheGeneralSettingsSilently) {
    Platform::CreateFolderChain(m_station.Support());
    Platform::WriteFile(m_station.Support() + u"GeneralSettings.xml", std::string("<\0/>", 4));
    const CString xml = m_configuration->GetCurrentGSXML();
    EXPECT_EQ(xml.find(u'\0'), CString::npos);
    EXPECT_EQ(xml.size(), 4u);
    EXPECT_FALSE(Platform::IsWellFormed(xml));
}

} // namespace
