// SPDX-License-Identifier: MIT
#include "platform/os/VersionRecord.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "support/DocumentExample.h"
#include "support/TemporaryFolder.h"

#include <cstring>
#include <elf.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

using Platform::FileVersion;
using Platform::ReadFileVersion;

namespace {

constexpr FileVersion kSampleVersion = {3, 14, 159, 65535};

CString Sample(CStringView name) {
    return Platform::PathFromNative(ZEBX_SAMPLE_MODULES "/") + CString(name);
}

// A small module file of nothing but its header, a table of names, the record and the
// sections' own table, to be spoilt piece by piece.
struct SmallModule {
    static constexpr char kNames[] = "\0.names\0.zebx.version";
    static constexpr char kRecord[] = "ZEBXVER1\1\0\2\0\3\0\4";

    Elf64_Ehdr header = {};
    char names[sizeof(kNames)];
    char record[16];
    Elf64_Shdr sections[3] = {};

    SmallModule() {
        std::memcpy(names, kNames, sizeof(names));
        std::memcpy(record, kRecord, sizeof(record));
        std::memcpy(header.e_ident, ELFMAG, SELFMAG);
        header.e_ident[EI_CLASS] = ELFCLASS64;
        header.e_ident[EI_DATA] = ELFDATA2LSB;
        header.e_shoff = offsetof(SmallModule, sections);
        header.e_shentsize = sizeof(Elf64_Shdr);
        header.e_shnum = 3;
        header.e_shstrndx = 1;
        Describe(sections[1], 1, offsetof(SmallModule, names), sizeof(names));
        Describe(sections[2], 8, offsetof(SmallModule, record), sizeof(record));
    }

    static void Describe(Elf64_Shdr& section, Elf64_Word name, Elf64_Off offset, Elf64_Xword size) {
        section.sh_name = name;
        section.sh_type = SHT_PROGBITS;
        section.sh_offset = offset;
        section.sh_size = size;
    }
};

class VersionRecords : public testing::Test {
protected:
    std::optional<FileVersion> VersionOf(std::string_view bytes) const {
        const CString path = m_folder.Path() + u"module.arx";
        EXPECT_FALSE(Platform::WriteFile(path, bytes));
        return ReadFileVersion(path);
    }

    // The version that is read after `spoil` was let loose on a small module.
    template<typename Spoil>
    std::optional<FileVersion> VersionAfter(Spoil spoil) const {
        SmallModule module;
        spoil(module);
        return VersionOf({reinterpret_cast<const char*>(&module), sizeof(module)});
    }

    TemporaryFolder m_folder;
};

std::string SampleBytes() {
    std::string bytes;
    EXPECT_FALSE(Platform::ReadFile(Sample(u"PlatformSample.arx"), bytes));
    return bytes;
}

} // namespace

TEST_F(VersionRecords, TheBuildsRecordIsReadWithoutLoading) {
    EXPECT_EQ(ReadFileVersion(Sample(u"PlatformSample.arx")), kSampleVersion);
    EXPECT_EQ(ReadFileVersion(Sample(u"platformsample.ARX")), kSampleVersion);
    // This one cannot be loaded; its version is the project's.
    EXPECT_TRUE(ReadFileVersion(Sample(u"PlatformSampleIncomplete.arx")));
}

TEST_F(VersionRecords, AModuleWithoutARecordHasNoVersion) {
    EXPECT_EQ(ReadFileVersion(Sample(u"PlatformSampleWithoutVersion.arx")), std::nullopt);
}

TEST_F(VersionRecords, WhatIsNoModuleHasNoVersion) {
    EXPECT_EQ(ReadFileVersion(m_folder.Path() + u"none.arx"), std::nullopt);
    EXPECT_EQ(ReadFileVersion(m_folder.Path()), std::nullopt);
    EXPECT_EQ(ReadFileVersion(u""), std::nullopt);
    EXPECT_EQ(VersionOf(""), std::nullopt);
    EXPECT_EQ(VersionOf("\x7F"
                        "ELF"),
              std::nullopt);
    EXPECT_EQ(VersionOf("ZEBXVER1\1\2\3\4\5\6\7"), std::nullopt);
    ASSERT_EQ(mkfifo((m_folder.Native() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(ReadFileVersion(m_folder.Path() + u"pipe"), std::nullopt);
}

TEST_F(VersionRecords, TheFourPartsStandInLittleEndianOrder) {
    EXPECT_EQ(VersionAfter([](SmallModule&) {}), (FileVersion{1, 2, 3, 4}));
    EXPECT_EQ(VersionAfter([](SmallModule& module) { module.record[9] = '\x80'; }),
              (FileVersion{0x8001, 2, 3, 4}));
}

TEST_F(VersionRecords, TheDocumentsExampleIsReadAsItSays) {
    const std::string example = BytesOfHex(DocumentExample("version-record"));
    ASSERT_EQ(example.size(), sizeof(SmallModule::record));
    EXPECT_EQ(VersionAfter([&](SmallModule& module) {
                  std::memcpy(module.record, example.data(), example.size());
              }),
              (FileVersion{1, 0, 258, 7}));
}

TEST_F(VersionRecords, OtherModuleFormatsHaveNoVersion) {
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.header.e_ident[EI_CLASS] = ELFCLASS32; }),
              std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.header.e_ident[EI_DATA] = ELFDATA2MSB; }),
              std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.header.e_ident[0] = 0; }), std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.header.e_shentsize = 40; }), std::nullopt);
}

TEST_F(VersionRecords, ARecordThatIsShortOrUnknownIsNone) {
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.sections[2].sh_size = 15; }), std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.sections[2].sh_size = 0; }), std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.record[7] = '2'; }), std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.sections[2].sh_type = SHT_NOBITS; }),
              std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.names[8] = 'z'; }), std::nullopt);
}

TEST_F(VersionRecords, NumbersThatLeadOutOfTheFileLeadNowhere) {
    for (const std::uint64_t number :
         {std::uint64_t{1} << 20, std::uint64_t{1} << 63, ~std::uint64_t{0}, ~std::uint64_t{0} - 63,
          ~std::uint64_t{0} - sizeof(SmallModule), std::uint64_t{sizeof(SmallModule)}}) {
        EXPECT_EQ(VersionAfter([&](SmallModule& m) { m.header.e_shoff = number; }), std::nullopt);
        for (const int index : {1, 2}) {
            EXPECT_EQ(VersionAfter([&](SmallModule& m) { m.sections[index].sh_offset = number; }),
                      std::nullopt);
            EXPECT_EQ(VersionAfter([&](SmallModule& m) { m.sections[index].sh_size = number; }),
                      std::nullopt);
        }
        EXPECT_EQ(VersionAfter([&](SmallModule& m) {
                      m.sections[2].sh_name = static_cast<Elf64_Word>(number);
                  }),
                  std::nullopt);
    }
    for (const Elf64_Half index : {Elf64_Half{0}, Elf64_Half{3}, Elf64_Half{0xFFFF}})
        EXPECT_EQ(VersionAfter([&](SmallModule& m) { m.header.e_shstrndx = index; }), std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.header.e_shnum = 0; }), std::nullopt);
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.sections[1].sh_size = sizeof(m.names) - 1; }),
              std::nullopt);
}

TEST_F(VersionRecords, MoreSectionsThanTheFileHoldsDoNotHideTheRecord) {
    EXPECT_EQ(VersionAfter([](SmallModule& m) { m.header.e_shnum = 0xFFFF; }),
              (FileVersion{1, 2, 3, 4}));
}

TEST_F(VersionRecords, ACutModuleHasNoVersion) {
    const std::string bytes = SampleBytes();
    ASSERT_GT(bytes.size(), 1000u);
    ASSERT_EQ(VersionOf(bytes), kSampleVersion);
    for (std::size_t size = 0; size < bytes.size(); size += size < 200 ? 1 : 97)
        ASSERT_EQ(VersionOf(std::string_view(bytes).substr(0, size)), std::nullopt) << size;
}

TEST_F(VersionRecords, ASpoiltHeaderGivesTheVersionOrNone) {
    const std::string bytes = SampleBytes();
    for (std::size_t bit = 0; bit < sizeof(Elf64_Ehdr) * 8; ++bit) {
        std::string spoilt = bytes;
        spoilt[bit / 8] = static_cast<char>(spoilt[bit / 8] ^ (1 << bit % 8));
        const auto version = VersionOf(spoilt);
        EXPECT_TRUE(!version || version == kSampleVersion) << bit;
    }
}
