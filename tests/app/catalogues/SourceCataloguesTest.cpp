// SPDX-License-Identifier: MIT
#include "SourceCatalogues.h"

#include "platform/text/Utf8.h"
#include "support/Python.h"
#include "support/Workstation.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace AppTest;
using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalogManager;

struct Counts {
    int groups = 0;
    int leaves = 0;
    int levels = 0;
};

Counts CountsOf(const std::vector<CatalogItemPtr>& items) {
    Counts counts;
    for (const CatalogItemPtr& item : items) {
        ++(item->IsGroup() ? counts.groups : counts.leaves);
        const Counts below = CountsOf(item->GetSortedSubItems());
        counts.groups += below.groups;
        counts.leaves += below.leaves;
        counts.levels = std::max(counts.levels, below.levels + 1);
    }
    return counts;
}

CString PropertyOf(const CatalogItemPtr& item, const char16_t* name) {
    const auto property = item->GetProperty(name);
    return property ? property->GetValue().ToText() : u"(no such property)";
}

class SourceCatalogueFiles : public testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(m_sources))
            GTEST_SKIP() << "no real catalogues in " << m_sources;
        m_station.Set("ZEBX_SUPPORT", std::nullopt);
        m_items = ConvertCatalogues(m_sources, m_support);
    }

    static ZEBGis::Data::CatalogPtr Load(const char16_t* reference) {
        CCatalogManager::Instance()->Forget(reference);
        auto catalog = CCatalogManager::Instance()->GetCatalog(reference, 1);
        EXPECT_TRUE(catalog) << Platform::ToUtf8(CCatalogManager::Instance()->GetProblem());
        return catalog;
    }
    std::string FileOf(const CString& reference) const {
        return BytesOfFile(m_support / "Catalogues" / (Platform::ToUtf8(reference) + ".xml"));
    }

    Workstation m_station;
    const fs::path m_sources = ZEBX_SHARED_DATA "/catalogues";
    const fs::path m_support = m_station.Folder().Native() / "support";
    std::size_t m_items = 0;
};

TEST_F(SourceCatalogueFiles, ThePresetsAreATreeOfFourLevels) {
    const Counts counts = CountsOf(Load(kPresets)->GetSortedRootElements());
    EXPECT_EQ(counts.groups, 71);
    EXPECT_EQ(counts.leaves, 879);
    EXPECT_EQ(counts.levels, 4);
}

TEST_F(SourceCatalogueFiles, TheSubdivisionsStandBelowTheirCountriesAndKinds) {
    const auto catalog = Load(kSubdivisions);
    const Counts counts = CountsOf(catalog->GetSortedRootElements());
    EXPECT_EQ(catalog->GetRootElementsMap().size(), 199u);
    EXPECT_EQ(counts.groups, 199 + 366);
    EXPECT_EQ(counts.leaves, 5117);
    EXPECT_EQ(counts.levels, 3);
}

TEST_F(SourceCatalogueFiles, ABareAmpersandIsText) {
    std::vector<CString> found;
    for (const auto& country : Load(kSubdivisions)->GetSortedRootElements())
        for (const auto& kind : country->GetSortedSubItems())
            for (const auto& entry : kind->GetSortedSubItems())
                if (entry->GetName().find(u'&') != CString::npos) {
                    found.push_back(entry->GetName());
                    EXPECT_EQ(PropertyOf(entry, u"parent"), u"L");
                }
    EXPECT_THAT(found, testing::ElementsAre(u"Enewetak & Ujelang", u"Bikini & Kili"));
}

TEST_F(SourceCatalogueFiles, TheCodeListsAreNineteen) {
    const auto catalog = Load(kCodeLists);
    EXPECT_EQ(catalog->GetRootElementsMap().size(), 19u);
    const Counts counts = CountsOf(catalog->GetSortedRootElements());
    EXPECT_EQ(counts.groups, 19);
    EXPECT_EQ(counts.leaves, 143);
    EXPECT_EQ(counts.levels, 2);
    EXPECT_EQ(m_items, 71u + 879 + 199 + 366 + 5117 + 19 + 143);
}

TEST_F(SourceCatalogueFiles, AnotherConversionGivesTheSameBytes) {
    std::vector<std::string> before;
    for (const SourceCatalogue& source : SourceCatalogues())
        before.push_back(FileOf(source.reference));
    EXPECT_EQ(ConvertCatalogues(m_sources, m_support), m_items);
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_TRUE(FileOf(SourceCatalogues()[i].reference) == before[i]) << i;
}

TEST_F(SourceCatalogueFiles, TheProgramWritesThem) {
    const fs::path support = m_station.Folder().Native() / "other";
    const std::string command = std::string(ZEBX_CONVERT_CATALOGUES) + " " + m_sources.string() +
                                " " + support.string() + " >/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
    for (const SourceCatalogue& source : SourceCatalogues())
        EXPECT_TRUE(
            BytesOfFile(support / "Catalogues" / (Platform::ToUtf8(source.reference) + ".xml")) ==
            FileOf(source.reference));
}

TEST(SourceCatalogue, AMissingSourceIsNamed) {
    Workstation station;
    station.Set("ZEBX_SUPPORT", std::nullopt);
    try {
        ConvertCatalogues("/nowhere", station.Folder().Native() / "support");
        ADD_FAILURE() << "a conversion of nothing";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("/nowhere/osm-presets"));
    }
}

} // namespace
