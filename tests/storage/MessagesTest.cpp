// SPDX-License-Identifier: MIT
#include "storage/Messages.h"
#include "EnglishMessages.h"

#include <gtest/gtest.h>

namespace Storage {
namespace {

// Every number with how many values the code gives it.
const std::map<MessageNumber, std::size_t> kMessages = {
    {MessageNumber::DisplayName, 0},
    {MessageNumber::Missing, 1},
    {MessageNumber::IsFolder, 1},
    {MessageNumber::OtherFile, 1},
    {MessageNumber::EmptyFile, 1},
    {MessageNumber::OtherDatabase, 1},
    {MessageNumber::NewerVersion, 3},
    {MessageNumber::MayNotOpen, 1},
    {MessageNumber::MayNotWrite, 1},
    {MessageNumber::Busy, 1},
    {MessageNumber::Full, 1},
    {MessageNumber::Damaged, 2},
    {MessageNumber::Unreachable, 2},
    {MessageNumber::NotCreated, 2},
    {MessageNumber::Internal, 1},
    {MessageNumber::ChangesLeft, 2},
    {MessageNumber::UnknownEngine, 1},
    {MessageNumber::NotAnAddress, 0},
    {MessageNumber::RelativeAddress, 1},
    {MessageNumber::NoDefaultFolder, 0},
    {MessageNumber::SettingsUnreadable, 2},
    {MessageNumber::SettingsLine, 2},
    {MessageNumber::SettingsNotWritten, 2},
    {MessageNumber::NoSettingsFolder, 0},
    {MessageNumber::SettingsCut, 1},
    {MessageNumber::DamagedPage, 2},
    {MessageNumber::NoPageChecksums, 1},
    {MessageNumber::ContentPageDamaged, 3},
    {MessageNumber::NeedsWriter, 1},
    {MessageNumber::NameEmpty, 2},
    {MessageNumber::NameIsFolder, 2},
    {MessageNumber::NameSeparator, 2},
    {MessageNumber::NameColon, 2},
    {MessageNumber::NameControl, 2},
    {MessageNumber::NameReserved, 2},
    {MessageNumber::NameTooLong, 2},
    {MessageNumber::NameNotText, 2},
    {MessageNumber::NameDiffersByCase, 3},
    {MessageNumber::NameTwice, 2},
    {MessageNumber::FileTooLarge, 3},
    {MessageNumber::FileNotBase64, 2},
    {MessageNumber::FileWithoutKind, 1},
    {MessageNumber::NothingGiven, 0},
    {MessageNumber::TextNotKept, 2},
    {MessageNumber::NoId, 2},
    {MessageNumber::NoSuchItem, 2},
    {MessageNumber::ContentDamaged, 2},
    {MessageNumber::ContentMissing, 2},
    {MessageNumber::RecordDamaged, 2},
    {MessageNumber::InPage, 1},
    {MessageNumber::InDatabase, 0},
    {MessageNumber::InCounters, 0},
    {MessageNumber::InTable, 1},
    {MessageNumber::InRow, 2},
    {MessageNumber::InFile, 3},
    {MessageNumber::InContent, 1},
    {MessageNumber::InLog, 1},
    {MessageNumber::PageDamaged, 0},
    {MessageNumber::EngineSays, 1},
    {MessageNumber::PartUnread, 1},
    {MessageNumber::SizeLies, 2},
    {MessageNumber::HashDiffers, 0},
    {MessageNumber::NoContent, 1},
    {MessageNumber::NoRevision, 1},
    {MessageNumber::NoHolder, 1},
    {MessageNumber::EndsTooEarly, 2},
    {MessageNumber::FoldedDiffers, 0},
    {MessageNumber::RevisionsMissing, 2},
    {MessageNumber::CounterMissing, 0},
    {MessageNumber::LastRevisionDiffers, 2},
    {MessageNumber::AllBytesDiffer, 2},
    {MessageNumber::LastRowDiffers, 2},
    {MessageNumber::MoreFindings, 1},
    {MessageNumber::LogBroken, 1},
    {MessageNumber::OnNetwork, 2},
    {MessageNumber::Interrupted, 2},
    {MessageNumber::NoWindowModule, 2},
    {MessageNumber::NoWindows, 1},
    {MessageNumber::AddressUnderstood, 1},
    {MessageNumber::FileFound, 1},
    {MessageNumber::WouldBeMade, 1},
    {MessageNumber::NotThere, 1},
    {MessageNumber::Opened, 2},
    {MessageNumber::Holds, 2},
    {MessageNumber::ReadAndWrite, 0},
    {MessageNumber::ReadOnly, 0},
    {MessageNumber::NotAServerUri, 1},
    {MessageNumber::PasswordInUri, 0},
    {MessageNumber::NoRepositoryInSchema, 2},
    {MessageNumber::NoSchemaName, 2},
    {MessageNumber::ServerSilent, 2},
    {MessageNumber::DatabaseNotUtf8, 2},
    {MessageNumber::MayNotUseSchema, 3},
    {MessageNumber::WaitInterrupted, 1},
    {MessageNumber::CommitUnanswered, 1},
    {MessageNumber::ConnectionBroke, 2},
    {MessageNumber::NoServerThere, 2},
    {MessageNumber::UnknownServer, 2},
    {MessageNumber::ServerDoesNotAnswer, 2},
    {MessageNumber::ServerStarting, 2},
    {MessageNumber::NoMoreConnections, 2},
    {MessageNumber::NoPassword, 2},
    {MessageNumber::WrongPassword, 2},
    {MessageNumber::NotLetIn, 2},
    {MessageNumber::NoServerDatabase, 2},
    {MessageNumber::ServerWithoutTls, 2},
    {MessageNumber::CertificateOfAnother, 2},
    {MessageNumber::CertificateNotTrusted, 2},
    {MessageNumber::NoRootCertificate, 2},
    {MessageNumber::NoFittingServer, 2},
    {MessageNumber::PoolerRefuses, 2},
    {MessageNumber::OptionRefused, 2},
    {MessageNumber::NoService, 2},
    {MessageNumber::ServerStopped, 2},
    {MessageNumber::StatementEnded, 2},
    {MessageNumber::ServerDiskFull, 2},
    {MessageNumber::ServerExhausted, 2},
    {MessageNumber::ServerForbids, 2},
    {MessageNumber::ServerTakesNoWrites, 2},
    {MessageNumber::ServerDamaged, 2},
    {MessageNumber::NoTables, 2},
    {MessageNumber::ServerRefusedStatement, 3},
    {MessageNumber::OldTables, 3},
    {MessageNumber::MayNotUpgrade, 2},
    {MessageNumber::NoUsers, 1},
    {MessageNumber::NoSuchUser, 2},
    {MessageNumber::MayNotMakeSchema, 3},
    {MessageNumber::MayNotMakeRoles, 3},
    {MessageNumber::SchemaOfAnother, 3},
    {MessageNumber::SchemaInUse, 2},
    {MessageNumber::MayNotGrant, 2},
    {MessageNumber::OtherRight, 3},
    {MessageNumber::NoGroupRoles, 2},
    {MessageNumber::ServerReached, 3},
    {MessageNumber::Encrypted, 1},
    {MessageNumber::NotEncrypted, 0},
    {MessageNumber::WouldBeMadeThere, 1},
    {MessageNumber::ReadOnlyThere, 1},
    {MessageNumber::IsStandby, 0},
    {MessageNumber::IsPooled, 0},
    {MessageNumber::CopyOntoItself, 1},
    {MessageNumber::CopyIsOther, 3},
    {MessageNumber::CopyIsAhead, 3},
    {MessageNumber::CopyWasChanged, 3},
    {MessageNumber::CopiedContentDamaged, 3},
    {MessageNumber::CopiedContentMissing, 3},
    {MessageNumber::CopyStopsAt, 2},
    {MessageNumber::CopiedTextNotKept, 3},
    {MessageNumber::CopiedRowsNotTaken, 3},
    {MessageNumber::CopyDiffers, 3},
    {MessageNumber::CopyKeptOtherBytes, 2},
    {MessageNumber::CopyInterrupted, 2},
    {MessageNumber::CopiedIsNotWhole, 1},
    {MessageNumber::ServerLacks, 1},
    {MessageNumber::ServerHasMore, 1},
};

std::size_t GapsOf(const CString& text) {
    std::size_t count = 0;
    for (auto at = text.find(u"%s"); at != CString::npos; at = text.find(u"%s", at + 2))
        ++count;
    return count;
}

TEST(StorageMessages, EveryNumberHasATextWithItsGapsInBothLanguagesAndNoOther) {
    for (const char* language : {"en", "hr"}) {
        const auto texts = ReadMessages(language);
        std::size_t ours = 0;
        for (const auto& [number, text] : texts)
            // In between are those of the connection window.
            ours += (number >= 20000 && number < 20210) || (number >= 20300 && number < 20450);
        EXPECT_EQ(ours, kMessages.size()) << language;
        for (const auto& [number, gaps] : kMessages) {
            ASSERT_TRUE(texts.count(int(number))) << language << " " << int(number);
            EXPECT_EQ(GapsOf(texts.at(int(number))), gaps) << language << " " << int(number);
        }
    }
}

TEST(StorageMessages, ValuesFillTheGapsInTheirOrder) {
    EnglishMessages english;
    EXPECT_EQ(TextOf({MessageNumber::NewerVersion, {u"/r.db", u"7", u"1"}}, &english),
              u"The repository /r.db has tables of version 7, and this program knows versions up "
              u"to 1. Install the newer program on this workstation.");
}

TEST(StorageMessages, WhatIsNoTextInAValueIsShownAndEndsNoLine) {
    EnglishMessages english;
    const CString name = {u'a', u'\0', u'\n', u'\x1b', u'\x7f', u'b'};
    EXPECT_EQ(TextOf({MessageNumber::NoSuchItem, {name, u"T"}}, &english),
              u"The item \"a\u2400\u240a\u241b\u2421b\" is not in the repository (T).");
    EXPECT_EQ(TextOf({MessageNumber::NoSuchItem, {name, u"T"}}, nullptr),
              u"20126 a\u2400\u240a\u241b\u2421b T");
}

TEST(StorageMessages, SeveralStandOneALine) {
    EnglishMessages english;
    const std::vector<Message> messages = {{MessageNumber::NoSuchItem, {u"a", u"T"}},
                                           {MessageNumber::NoSuchItem, {u"b", u"T"}}};
    EXPECT_EQ(TextOf(messages, &english), u"The item \"a\" is not in the repository (T).\n"
                                          u"The item \"b\" is not in the repository (T).");
}

TEST(StorageMessages, WithoutAProviderTheNumberAndTheValuesAreTold) {
    EXPECT_EQ(TextOf({MessageNumber::Missing, {u"/r.db"}}, nullptr), u"20010 /r.db");
}

} // namespace
} // namespace Storage
