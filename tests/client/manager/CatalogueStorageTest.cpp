// SPDX-License-Identifier: MIT
// Catalogue items through the manager and the real storage plug-in: what the user gets.
#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/Base64.h"
#include "ZEBXRepositoryClient/CatalogueTransfer.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "ZEBXRepositoryStorage/RepositoryAdministration.h"
#include "client/manager/LocalCatalogues.h"
#include "platform/host/FileSteps.h"
#include "platform/host/Interruption.h"
#include "platform/os/Module.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"
#include "storage/Engine.h"
#include "support/Bytes.h"
#include "support/WorkspaceLines.h"

#include <gmock/gmock.h>

using namespace Repository;
using testing::ElementsAre;
using testing::IsEmpty;
using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalogManager;

namespace {

using NetItem = boost::shared_ptr<CNetCatalogueItem>;

// Gives out what a test put in, and keeps what it is told to put in place.
class TestFileManager : public IFileManager {
public:
    explicit TestFileManager(const char16_t* id) : m_id(id) {}
    virtual ~TestFileManager() = default;
    void GetFiles(RepositoryFiles& files, const char16_t* itemId) override {
        for (const auto& file : outgoing[itemId])
            files.push_back(file);
    }
    void PutFiles(RepositoryFiles& files, int, const void*) override {
        for (const auto& file : files)
            incoming.emplace_back(file->GetFileName(), Base64Decode(file->GetFileContent()));
    }
    CString GetId() override { return m_id; }

    std::map<CString, RepositoryFiles> outgoing; // by item
    std::vector<std::pair<CString, std::string>> incoming;

private:
    CString m_id;
};

Storage::RepositoryAdministration& Administration() {
    const auto module = Platform::LoadModule(Platform::PathFromNative(ZEBX_SQL_PLUGIN));
    const auto get = reinterpret_cast<Storage::GetRepositoryAdministrationFunction>(
        Platform::FindExport(module, "GetRepositoryAdministration"));
    return *get();
}

// One station after another on one repository.
class CatalogueStorage : public testing::Test {
protected:
    CatalogueStorage() {
        station.Set("ZEBX_INSTALL", ZEBX_BUILD_DIR "/lib/zebx");
        station.Set("ZEBX_LANGUAGE", "en");
        Platform::UserSettings::Instance()->Reset();
        manager = CRepositoryStorageManager::Instance();
        manager->RegisterFileManager(boost::make_shared<TestFileManager>(u"Drawings"));
        manager->RegisterFileManager(boost::make_shared<TestFileManager>(u"PIPES"));
        Manager(u"Drawings").outgoing.clear();
        Manager(u"PIPES").incoming.clear();
        CString text;
        EXPECT_EQ(Administration().Connect(u"sqlite:" + Path(), true, text), Storage::Problem::None)
            << testing::PrintToString(text);
        DeclareCatalogues(station, {Declared(u"PIPES", u"Drawings")});
    }

    // Alone: the installation declares catalogues too.
    static std::vector<CatalogueRow> Pipes() {
        return {{CCatalogManager::Instance()->GetCatalogMetadata(u"PIPES"), 1}};
    }
    CString Path() const { return station.Folder().Path() + u"repository.db"; }
    TestFileManager& Manager(const char16_t* id) const {
        return static_cast<TestFileManager&>(*manager->GetFileManagerById(id));
    }

    int Add(const CatalogItemPtr& item, int withFiles = 0) {
        return manager->AddCatalogItem(u"PIPES", u"Pipes", item, withFiles);
    }
    void AddBelow(const char16_t* parent, const CatalogItemPtr& item) {
        item->SetParentItemGuid(parent);
        EXPECT_EQ(Add(item), 1);
    }
    std::vector<CString> Names(const char16_t* parent = nullptr) {
        std::vector<NetItem> items(1);
        EXPECT_EQ(manager->GetChildCatalogItems(u"PIPES", parent, items, 0), 1);
        std::vector<CString> names;
        for (const NetItem& item : items)
            names.push_back(item->GetName());
        return names;
    }
    static std::int64_t Revision() { return Administration().State().revision; }

    static boost::shared_ptr<CRepositoryFile> File(const char16_t* name, std::string_view bytes) {
        const auto file = boost::make_shared<CRepositoryFile>();
        file->SetFileName(name);
        file->SetFileContent(Base64Encode(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
        return file;
    }

    // Changes the first byte of `needle`, which stands in the repository's file once or more.
    void Damage(const std::string& needle) const {
        const std::string native = Platform::NativePath(Path());
        std::string bytes = BytesOfFile(native);
        std::size_t at = bytes.find(needle);
        ASSERT_NE(at, std::string::npos);
        for (; at != std::string::npos; at = bytes.find(needle, at))
            bytes[at] = '!';
        MakeFile(native, bytes);
    }

    Workstation station;
    CRepositoryStorageManager* manager = nullptr;
    WorkspaceLines log;
};

TEST_F(CatalogueStorage, SiblingsComeBackInTheOrderOfTheirArrivalOnEveryLevel) {
    for (const char16_t* id : {u"z", u"a", u"m"}) {
        EXPECT_EQ(Add(Group(id, id)), 1);
        AddBelow(u"z", Leaf(CString(u"z-") + id, id));
    }
    EXPECT_THAT(Names(), ElementsAre(u"z", u"a", u"m"));
    EXPECT_THAT(Names(u"z"), ElementsAre(u"z", u"a", u"m"));
    EXPECT_THAT(Names(u"a"), IsEmpty());
}

TEST_F(CatalogueStorage, ANullParentAndAnEmptyOneAreBothTheTopLevel) {
    Add(Leaf(u"1", u"x"));
    EXPECT_THAT(Names(nullptr), ElementsAre(u"x"));
    EXPECT_THAT(Names(u""), ElementsAre(u"x"));
}

TEST_F(CatalogueStorage, AnItemThatIsAddedAgainKeepsItsPlaceAndTheSameOneMakesNoRevision) {
    for (const char16_t* id : {u"1", u"2", u"3"})
        Add(Leaf(id, id));
    const std::int64_t before = Revision();
    EXPECT_EQ(Add(Leaf(u"1", u"new")), 1);
    EXPECT_THAT(Names(), ElementsAre(u"new", u"2", u"3"));
    EXPECT_EQ(Revision(), before + 1);
    EXPECT_EQ(Add(Leaf(u"1", u"new")), 1);
    EXPECT_EQ(Revision(), before + 1);
}

TEST_F(CatalogueStorage, DeletingAGroupTakesItsDescendantsAlongInOneRevision) {
    Add(Group(u"g", u"g"));
    AddBelow(u"g", Group(u"h", u"h"));
    AddBelow(u"h", Leaf(u"x", u"x"));
    Add(Leaf(u"other", u"other"));
    const std::int64_t before = Revision();
    EXPECT_EQ(manager->DeleteCatalogItem(u"PIPES", u"g"), 1);
    EXPECT_EQ(Revision(), before + 1);
    EXPECT_THAT(Names(), ElementsAre(u"other"));
    EXPECT_THAT(Names(u"h"), IsEmpty());
    EXPECT_FALSE(manager->GetCatalogItemById(u"PIPES", u"x", 0));
}

TEST_F(CatalogueStorage, UnknownTagsParentsAndIdsGiveNothingAndNoFailure) {
    Add(Leaf(u"1", u"x"));
    EXPECT_THAT(Names(u"unknown"), IsEmpty());
    std::vector<NetItem> items(1);
    EXPECT_EQ(manager->GetChildCatalogItems(u"UNKNOWN", nullptr, items, 1), 1);
    EXPECT_THAT(items, IsEmpty());
    EXPECT_FALSE(manager->GetCatalogItemById(u"PIPES", u"unknown", 1));
    EXPECT_FALSE(manager->GetCatalogItemById(u"UNKNOWN", u"1", 1));
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(CatalogueStorage, DeletingWhatIsNotThereIsAFailureThatIsTold) {
    EXPECT_EQ(manager->DeleteCatalogItem(u"PIPES", u"unknown"), 0);
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_NE(log.Lines()[0].second.find(u"unknown"), CString::npos);
}

TEST_F(CatalogueStorage, AnItemComesBackAsItWas) {
    const auto item = Leaf(u"{1}", u"čvor <&\"1\"> 𐍈");
    item->SetProperty(u"DN", ZEBGis::Data::CDataBox::OfInteger(-110));
    item->SetProperty(u"prazno", ZEBGis::Data::CDataBox());
    EXPECT_EQ(Add(item), 1);
    const auto back = manager->GetCatalogItemById(u"PIPES", u"{1}", 0);
    ASSERT_TRUE(back);
    EXPECT_EQ(XmlOf(*back), XmlOf(*item));
}

TEST_F(CatalogueStorage, FilesTravelWithTheirItemOnlyWhenAskedFor) {
    Manager(u"Drawings").outgoing[u"1"] = {File(u"b.dwg", "bytes b"), File(u"a.dwg", "")};
    EXPECT_EQ(Add(Leaf(u"1", u"x"), 1), 1);
    EXPECT_TRUE(manager->GetCatalogItemById(u"PIPES", u"1", 0));
    EXPECT_THAT(Manager(u"PIPES").incoming, IsEmpty());
    EXPECT_TRUE(manager->GetCatalogItemById(u"PIPES", u"1", 1));
    EXPECT_THAT(Manager(u"PIPES").incoming,
                ElementsAre(testing::Pair(u"b.dwg", "bytes b"), testing::Pair(u"a.dwg", "")));
    for (const int withFiles : {0, 1}) {
        std::vector<NetItem> items;
        EXPECT_EQ(manager->GetChildCatalogItems(u"PIPES", nullptr, items, withFiles), 1);
        EXPECT_EQ(items.at(0)->GetFiles()->size(), withFiles ? 2U : 0U);
    }
}

TEST_F(CatalogueStorage, ADamagedFileIsToldAndNeverPutInPlaceAndTheItemComesWithTheOthers) {
    Manager(u"Drawings").outgoing[u"1"] = {File(u"a.dwg", "good"), File(u"b.dwg", "bytes")};
    EXPECT_EQ(Add(Leaf(u"1", u"x"), 1), 1);
    Storage::OpenRepository({Path()})->Execute(
        "UPDATE content SET bytes = x'4259544553' WHERE size_bytes = 5", {});
    EXPECT_TRUE(manager->GetCatalogItemById(u"PIPES", u"1", 1));
    EXPECT_THAT(Manager(u"PIPES").incoming, ElementsAre(testing::Pair(u"a.dwg", "good")));
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].first, 4);
    EXPECT_NE(log.Lines()[0].second.find(u"b.dwg"), CString::npos);
}

TEST_F(CatalogueStorage, AWholeCatalogueWithItsFilesGoesFromStationToStation) {
    MakeCatalogue(u"PIPES",
                  {Group(u"z", u"z", {Leaf(u"y", u"y"), Group(u"h", u"h", {Leaf(u"x", u"x")})}),
                   Leaf(u"a", u"a")});
    Manager(u"Drawings").outgoing[u"x"] = {File(u"x.dwg", "drawing")};
    CCatalogueTransfer transfer(*manager);
    const auto metadata = CCatalogManager::Instance()->GetCatalogMetadata(u"PIPES");
    EXPECT_NE(transfer.SendCatalog(*metadata), 0);
    EXPECT_EQ(Revision(), 5); // each item is one
    EXPECT_NE(transfer.SendCatalog(*metadata), 0);
    EXPECT_EQ(Revision(), 5); // nothing has changed

    std::filesystem::remove(CatalogueFile(station, "PIPES")); // as another station begins
    CCatalogManager::Instance()->Forget(u"PIPES");
    EXPECT_EQ(transfer.LoadCatalogs(Pipes(), 1), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"z(y h(x)) a");
    EXPECT_THAT(Manager(u"PIPES").incoming, ElementsAre(testing::Pair(u"x.dwg", "drawing")));
}

TEST_F(CatalogueStorage, AGroupOfWhichAPageIsDamagedIsToldAndDoesNotReplaceTheLocalOne) {
    const CString padding(500, u'p');
    std::vector<CatalogItemPtr> members;
    for (int number = 0; number < 200; ++number)
        members.push_back(Leaf(u"member-" + Platform::ToText(number), padding));
    MakeCatalogue(u"PIPES", {Group(u"g", u"g", members)});
    const std::string before = BytesOfFile(CatalogueFile(station, "PIPES"));
    CCatalogueTransfer transfer(*manager);
    EXPECT_NE(transfer.SendCatalog(*CCatalogManager::Instance()->GetCatalogMetadata(u"PIPES")), 0);
    CCatalogManager::Instance()->Forget(u"PIPES");
    const std::size_t linesBefore = log.Lines().size();

    CString text;
    Administration().Connect(u"sqlite:" + Path() + u".other", true, text); // lets go of the file
    Damage("<item guid=\"member-150\"");
    Administration().Connect(u"sqlite:" + Path(), false, text);
    EXPECT_EQ(transfer.LoadCatalogs(Pipes(), 1), 1);

    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), linesBefore + 2);
    EXPECT_EQ(lines[linesBefore].first, 4); // the storage says what is damaged
    EXPECT_EQ(lines[linesBefore + 1],
              (WorkspaceLines::Line{
                  4, Platform::Fill(ZEBGis::CModuleConfiguration::Instance()->GetMsg(22004),
                                    {u"Name of PIPES"})}));
    EXPECT_EQ(BytesOfFile(CatalogueFile(station, "PIPES")), before);
}

TEST_F(CatalogueStorage, TheUsersWishToStopIsHeardAfterTheItemUnderWay) {
    int items = 0;
    Platform::SetFileStepListener([&](Platform::FileStep step) {
        if (step == Platform::FileStep::ItemSent || step == Platform::FileStep::ItemLoaded)
            if (++items == 2)
                Platform::RequestInterruption();
    });
    MakeCatalogue(u"PIPES", {Leaf(u"1", u"1"), Leaf(u"2", u"2"), Leaf(u"3", u"3")});
    {
        const Platform::InterruptionGuard guard;
        const auto metadata = CCatalogManager::Instance()->GetCatalogMetadata(u"PIPES");
        EXPECT_EQ(CCatalogueTransfer(*manager).SendCatalog(*metadata), 0);
        EXPECT_EQ(items, 2);
    }
    EXPECT_THAT(Names(), ElementsAre(u"1", u"2"));

    EXPECT_EQ(Add(Leaf(u"2", u"new")), 1);
    EXPECT_EQ(Add(Leaf(u"3", u"new")), 1);
    items = 0;
    {
        const Platform::InterruptionGuard guard;
        EXPECT_EQ(CCatalogueTransfer(*manager).LoadCatalogs(Pipes(), 1), 0);
        EXPECT_EQ(items, 2);
    }
    Platform::SetFileStepListener({});
    EXPECT_EQ(SavedOutline(u"PIPES"), u"1 2 3");
}

} // namespace
