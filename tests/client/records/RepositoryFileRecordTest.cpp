// SPDX-License-Identifier: MIT
// The record of a file, written and read.
#include "RepositoryFiles.h"
#include "platform/text/Utf8.h"
#include "platform/text/Windows1250.h"
#include "support/DocumentExample.h"

using namespace Repository;

namespace {

CRepositoryFile Deserialized(const CString& record) {
    CRepositoryFile file;
    EXPECT_EQ(file.Deserialize(record.c_str()), 1);
    return file;
}

CRepositoryFile DeserializedNarrow(const std::string& record) {
    CRepositoryFile file;
    EXPECT_EQ(file.Deserialize(record), 1);
    return file;
}

CRepositoryFile SmallFile() {
    CRepositoryFile file;
    file.SetFileId(u"A");
    file.SetFileManagerId(u"M");
    file.SetOriginId(u"O");
    file.SetFileName(u"n.dwg");
    file.SetFileContent("TWFu");
    file.SetFileType(FileTypeNCF);
    return file;
}

} // namespace

TEST(RepositoryFileRecord, TheRecordEndsWithAHashAfterTheType) {
    EXPECT_EQ(RecordOf(SmallFile()), u"A#M#O#n.dwg##TWFu#4#");
}

TEST(RepositoryFileRecord, ANewFileIsSixEmptyFieldsAndTypeZero) {
    EXPECT_EQ(RecordOf(CRepositoryFile()), u"######0#");
}

TEST(RepositoryFileRecord, TheTextIsReplacedAndTheStreamIsAppendedTo) {
    CString text = u"what was there";
    SmallFile().Serialize(text);
    EXPECT_EQ(text, u"A#M#O#n.dwg##TWFu#4#");

    WStringStream stream;
    stream << u"before";
    SmallFile().Serialize(stream);
    stream << u"behind";
    EXPECT_EQ(stream.str(), u"beforeA#M#O#n.dwg##TWFu#4#behind");
}

TEST(RepositoryFileRecord, TheTypeIsASignedNumber) {
    CRepositoryFile file = SmallFile();
    file.SetFileType(static_cast<enmFileType>(-12));
    EXPECT_EQ(RecordOf(file), u"A#M#O#n.dwg##TWFu#-12#");
    EXPECT_EQ(Deserialized(RecordOf(file)).GetFileType(), -12);
}

TEST(RepositoryFileRecord, EveryFieldSurvives) {
    const CRepositoryFile file = FileNamed(u"čvor 1.dwg");
    ExpectEqual(Deserialized(RecordOf(file)), file);
}

TEST(RepositoryFileRecord, AParameterOfTheCodePagesCharactersSurvivesExactly) {
    CRepositoryFile file;
    CString every;
    for (int byte = 1; byte < 256; ++byte)
        every += Platform::FromAnsi(std::string(1, static_cast<char>(byte)));
    file.SetCustomParameter(every.c_str());
    EXPECT_EQ(Deserialized(RecordOf(file)).GetCustomParameter(), every);
}

TEST(RepositoryFileRecord, AParametersOtherCharactersComeBackAsQuestionMarks) {
    CRepositoryFile file;
    file.SetCustomParameter(u"5 Ω");
    EXPECT_EQ(Deserialized(RecordOf(file)).GetCustomParameter(), u"5 ?");
}

TEST(RepositoryFileRecord, PlainFieldsKeepCharactersThatTheCodePageLacks) {
    CRepositoryFile file = SmallFile();
    file.SetFileName(u"Ω 水.dwg");
    EXPECT_EQ(Deserialized(RecordOf(file)).GetFileName(), u"Ω 水.dwg");
}

TEST(RepositoryFileRecord, ADelimiterInAPlainFieldBreaksTheRecord) {
    CRepositoryFile file = SmallFile();
    file.SetFileId(u"A#B");
    const CRepositoryFile read = Deserialized(RecordOf(file));
    EXPECT_EQ(read.GetFileId(), u"A");
    EXPECT_EQ(read.GetFileManagerId(), u"B");
    EXPECT_EQ(read.GetFileName(), u"O");
}

TEST(RepositoryFileRecord, AShortRecordFillsTheLeadingFieldsAndLeavesTheOthers) {
    for (const bool narrow : {false, true})
        for (const std::string record : {"A#M#", "A#M"}) {
            CRepositoryFile file = FileNamed(u"x");
            CRepositoryFile expected = file;
            expected.SetFileId(u"A");
            expected.SetFileManagerId(u"M");
            EXPECT_EQ(narrow ? file.Deserialize(record)
                             : file.Deserialize(Platform::FromUtf8(record).c_str()),
                      1);
            ExpectEqual(file, expected);
        }
}

TEST(RepositoryFileRecord, AnEmptyFieldWithItsHashEmptiesTheFieldsText) {
    CRepositoryFile file = FileNamed(u"x");
    CRepositoryFile expected = file;
    expected.SetFileId(u"A");
    expected.SetFileManagerId(u"");
    expected.SetOriginId(u"");
    EXPECT_EQ(file.Deserialize(u"A###"), 1);
    ExpectEqual(file, expected);
}

TEST(RepositoryFileRecord, AnEmptyTextEmptiesTheIdAlone) {
    for (int form = 0; form < 3; ++form) {
        CRepositoryFile file = FileNamed(u"x");
        CRepositoryFile expected = file;
        expected.SetFileId(u"");
        EXPECT_EQ(form == 0   ? file.Deserialize(u"")
                  : form == 1 ? file.Deserialize(static_cast<const char16_t*>(nullptr))
                              : file.Deserialize(std::string()),
                  1);
        ExpectEqual(file, expected);
    }
}

TEST(RepositoryFileRecord, WhatFollowsTheSevenFieldsIsIgnored) {
    ExpectEqual(Deserialized(u"A#M#O#n.dwg##TWFu#4#more#5#"), SmallFile());
    ExpectEqual(Deserialized(u"A#M#O#n.dwg##TWFu#4"), SmallFile());
}

TEST(RepositoryFileRecord, TheTypeIsReadAsTheCLibraryReadsNumbers) {
    EXPECT_EQ(Deserialized(u"######x4#").GetFileType(), 0);
    EXPECT_EQ(Deserialized(u"###### \t+5x#").GetFileType(), 5);
    EXPECT_EQ(Deserialized(u"########").GetFileType(), 0);
    EXPECT_EQ(Deserialized(u"######-4#").GetFileType(), -4);
    EXPECT_EQ(DeserializedNarrow("###### \t+5x#").GetFileType(), 5);
}

TEST(RepositoryFileRecord, AMalformedParameterIsReadAsFarAsItGoes) {
    EXPECT_EQ(Deserialized(u"####TWFu!TWFu#").GetCustomParameter(), u"Man");
    EXPECT_EQ(DeserializedNarrow("####TWFu!TWFu#").GetCustomParameter(), u"Man");
}

TEST(RepositoryFileRecord, TheContentStaysBase64AndIsNotChecked) {
    EXPECT_EQ(Deserialized(u"#####not base64!#").GetFileContent(), "not base64!");
}

TEST(RepositoryFileRecord, ANewContentIsNotSavedYet) {
    CRepositoryFile file;
    file.SetIsSaved(1);
    file.Deserialize(u"A#M#O#n#p#");
    EXPECT_EQ(file.GetIsSaved(), 1); // no content came
    file.Deserialize(u"A#M#O#n#p##");
    EXPECT_EQ(file.GetIsSaved(), 0);
    file.SetIsSaved(1);
    file.Deserialize(std::string("#####TWFu"));
    EXPECT_EQ(file.GetIsSaved(), 0);
}

TEST(RepositoryFileRecord, ANarrowRecordIsReadInTheAnsiCodePage) {
    const CRepositoryFile file = FileNamed(u"Čvorišče.dwg");
    ExpectEqual(DeserializedNarrow(Platform::ToAnsi(RecordOf(file))), file);
}

TEST(RepositoryFileRecord, ANarrowRecordsContentIsTakenByteForByte) {
    const std::string content("\x80\0\xE4-", 4);
    EXPECT_EQ(DeserializedNarrow("#####" + content + "#4#").GetFileContent(), content);
    // Its texts end at a zero byte.
    EXPECT_EQ(DeserializedNarrow(std::string("a\0b#", 4)).GetFileId(), u"a");
}

TEST(RepositoryFileRecord, AWideRecordsContentGoesThroughTheCodePage) {
    EXPECT_EQ(Deserialized(u"#####ŠΩ#").GetFileContent(), "\x8A?");
    CRepositoryFile file;
    file.SetFileContent("\x8A");
    EXPECT_EQ(RecordOf(file), u"#####Š#0#");
}

TEST(RepositoryFileRecord, MegabytesOfContentSurvive) {
    CRepositoryFile file = SmallFile();
    file.SetFileContent(std::string(8'000'000, 'Q'));
    ExpectEqual(Deserialized(RecordOf(file)), file);
}

TEST(RepositoryFileRecord, TheDocumentsExampleIsWhatIsWrittenAndRead) {
    CRepositoryFile file;
    file.SetFileId(u"f-17");
    file.SetFileManagerId(u"NCF");
    file.SetOriginId(u"002_NODE");
    file.SetFileName(u"čvor 1.dwg");
    file.SetCustomParameter(u"Šifra #1");
    file.SetFileContent("TWFu");
    file.SetFileType(FileTypeNCF);
    const std::string example = DocumentExample("repository-file");
    EXPECT_EQ(Platform::ToUtf8(RecordOf(file)), example);
    ExpectEqual(Deserialized(Platform::FromUtf8(example)), file);
    ExpectEqual(DeserializedNarrow(Platform::ToAnsi(Platform::FromUtf8(example))), file);
}
