// SPDX-License-Identifier: MIT
#include "TestFiles.h"
#include "TestRepository.h"
#include "ZEBXRepositoryClient/ContentKinds.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using Repository::kContentFOC;
using Repository::kContentNCF;
using testing::ElementsAre;
using testing::IsEmpty;

class StoreFiles : public StoreTest {
protected:
    std::vector<CString> Ids(const CString& kind = u"001_LABEL", int code = kContentNCF) {
        return store->FileIds(code, kind);
    }
    std::vector<CString> Names(const CString& kind = u"001_LABEL", int code = kContentNCF) {
        std::vector<CString> names;
        for (const CString& id : Ids(kind, code))
            names.push_back(store->File(id)->GetFileName());
        return names;
    }
    std::string Content(const CString& name) {
        for (const CString& id : Ids())
            if (const auto file = store->File(id); file->GetFileName() == name)
                return BytesOf(file);
        return "(none)";
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreFiles);

TEST_P(StoreFiles, AnEmptyRepositoryHasNoFilesAndRevisionZero) {
    EXPECT_THAT(Ids(), IsEmpty());
    EXPECT_EQ(Revision(), 0);
}

TEST_P(StoreFiles, AFileComesBackWithEveryFieldAndTheStoredId) {
    const auto sent = MakeFile(u"čvor, 1.DWG", std::string("\0\xFF drawing", 10));
    sent->SetFileId(u"an id of the sender's");
    sent->SetFileManagerId(u"manager ž");
    sent->SetCustomParameter(u"a # parameter $ with | signs @");
    store->AddFiles({sent});

    const auto ids = Ids();
    ASSERT_EQ(ids.size(), 1u);
    const auto file = store->File(ids[0]);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->GetFileId(), ids[0]);
    EXPECT_EQ(file->GetFileManagerId(), sent->GetFileManagerId());
    EXPECT_EQ(file->GetOriginId(), u"001_LABEL");
    EXPECT_EQ(file->GetFileName(), u"čvor, 1.DWG");
    EXPECT_EQ(file->GetCustomParameter(), sent->GetCustomParameter());
    EXPECT_EQ(file->GetFileType(), Repository::FileTypeNCF);
    EXPECT_EQ(file->GetFileContent(), sent->GetFileContent());
    EXPECT_EQ(file->GetIsSaved(), 0);
}

TEST_P(StoreFiles, KindsOfDifferentCodesDoNotMix) {
    store->AddFiles({MakeFile(u"a.dwg", "ncf", u"K", Repository::FileTypeNCF),
                     MakeFile(u"b.xml", "foc", u"K", Repository::FileTypeFOC)});
    EXPECT_THAT(Names(u"K", kContentNCF), ElementsAre(u"a.dwg"));
    EXPECT_THAT(Names(u"K", kContentFOC), ElementsAre(u"b.xml"));
    EXPECT_THAT(Names(u"k", kContentNCF), IsEmpty());
}

TEST_P(StoreFiles, AKindIsListedInTheCaseFoldedOrderOfTheNames) {
    store->AddFiles({MakeFile(u"b.dwg", "1"), MakeFile(u"Č.dwg", "2"), MakeFile(u"A.dwg", "3"),
                     MakeFile(u"C.dwg", "4"), MakeFile(u"a1.dwg", "5")});
    EXPECT_THAT(Names(), ElementsAre(u"A.dwg", u"a1.dwg", u"b.dwg", u"C.dwg", u"Č.dwg"));
}

TEST_P(StoreFiles, AddingReplacesByNameAndRemovesNothing) {
    store->AddFiles({MakeFile(u"a.dwg", "one"), MakeFile(u"b.dwg", "two")});
    store->AddFiles({MakeFile(u"b.dwg", "three")});
    EXPECT_THAT(Names(), ElementsAre(u"a.dwg", u"b.dwg"));
    EXPECT_EQ(Content(u"a.dwg"), "one");
    EXPECT_EQ(Content(u"b.dwg"), "three");
    EXPECT_EQ(Revision(), 2);
}

TEST_P(StoreFiles, AListingStandsForWhatItListedWhenSomebodyReplacesAFileMeanwhile) {
    store->AddFiles({MakeFile(u"a.dwg", "old")});
    const auto ids = Ids();
    OpenStore()->AddFiles({MakeFile(u"a.dwg", "new")});
    EXPECT_EQ(BytesOf(store->File(ids[0])), "old");
    EXPECT_EQ(Content(u"a.dwg"), "new");
}

TEST_P(StoreFiles, SendingTheSameAgainMakesNoRevisionAndAddsNoContent) {
    store->AddFiles({MakeFile(u"a.dwg", "one"), MakeFile(u"b.dwg", "two")});
    const auto ids = Ids();
    store->AddFiles({MakeFile(u"b.dwg", "two"), MakeFile(u"a.dwg", "one")});
    EXPECT_EQ(Revision(), 1);
    EXPECT_EQ(Ids(), ids);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 2);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM stored_file"), 2);
}

TEST_P(StoreFiles, AContentIsKeptOnce) {
    store->AddFiles({MakeFile(u"a.dwg", "same"), MakeFile(u"b.dwg", "same"),
                     MakeFile(u"c.dwg", "same", u"002_NODE")});
    store->AddFiles({MakeFile(u"d.dwg", "same")});
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 1);
    RepositoryState state;
    store->ReadState(state);
    EXPECT_EQ(state.contentBytes, 4);
    EXPECT_EQ(state.files, 4);
}

TEST_P(StoreFiles, AnEmptyFileIsAFile) {
    store->AddFiles({MakeFile(u"empty.dwg", "")});
    EXPECT_EQ(Content(u"empty.dwg"), "");
    EXPECT_THAT(Names(), ElementsAre(u"empty.dwg"));
}

TEST_P(StoreFiles, IdsThatNobodyHandedOutGiveNoFile) {
    store->AddFiles({MakeFile(u"a.dwg", "one")});
    for (const CString id :
         {u"", u"0", u"-1", u"7", u" 1", u"1 ", u"1x", u"a.dwg", u"99999999999999999999", u"čvor"})
        EXPECT_FALSE(store->File(id));
}

} // namespace
} // namespace Storage
