// SPDX-License-Identifier: MIT
// Catalogues of many items: what grows with their number and what must not.
#include "Catalogues.h"

#include <ctime>

namespace ZEBGis::Data {
namespace {

// Of the processor, so that what else the machine does counts little.
double SecondsSince(std::clock_t start) {
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Six levels, `children` below each item of the upper five.
void Fill(std::string& xml, const std::string& guid, int level, int children) {
    xml += "<item guid=\"{C0FFEE00-0000-0000-0000-" + guid + "}\" name=\"Cijev č " + guid +
           "\" group=\"" + (level < 6 ? "yes" : "no") + "\">";
    xml += "<property name=\"DN\" type=\"integer\" value=\"110\"/><property name=\"BLOCK\" "
           "value=\"PE " +
           guid + ".dwg\"/><property name=\"MATERIAL\" value=\"Polietilen\"/>";
    for (int i = 0; level < 6 && i < children; ++i)
        Fill(xml, guid + static_cast<char>('a' + i), level + 1, children);
    xml += "</item>\n";
}

// 7 ^ 0 + ... + 7 ^ 5 items, and as many times as `roots`.
std::string Catalogue(int roots) {
    std::string xml = "<catalogue>\n";
    for (int i = 0; i < roots; ++i)
        Fill(xml, std::to_string(i), 1, 7);
    return xml + "</catalogue>\n";
}

class CatalogueSize : public Catalogues {
protected:
    static constexpr std::size_t kItems = 19608; // of one root
};

TEST_F(CatalogueSize, FiftyThousandItemsInSixLevelsLoadInASecond) {
    Write(Catalogue(3));
    const auto start = std::clock();
    const CatalogPtr catalog = Load();
    const double seconds = SecondsSince(start);
    ASSERT_TRUE(catalog) << Problem();
    EXPECT_EQ(catalog->GetItemCount(), 3 * kItems);
    RecordProperty("seconds", std::to_string(seconds));
    std::printf("loaded %zu items in %.2f s\n", catalog->GetItemCount(), seconds);
#if defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(seconds, 1.0);
#endif
    m_manager->Forget(kPipes);
}

TEST_F(CatalogueSize, AnItemIsFoundInAsMuchTimeAmongManyAsAmongFew) {
    const auto secondsOf = [&](const CatalogPtr& catalog, const std::vector<CString>& guids) {
        const auto start = std::clock();
        for (int i = 0; i < 200000; ++i)
            EXPECT_TRUE(catalog->GetItembyGuid(guids[static_cast<std::size_t>(i) % 64].c_str()));
        return SecondsSince(start);
    };
    std::vector<CString> guids;
    for (const char a : std::string("abcdefg"))
        for (const char b : std::string("abcdefg"))
            for (const char c : std::string("ab"))
                guids.push_back(Platform::FromUtf8(std::string("{C0FFEE00-0000-0000-0000-0") + a +
                                                   b + c + "}"));
    const CatalogPtr few = Load(Catalogue(1));
    const CatalogPtr many = Load(Catalogue(5));
    ASSERT_TRUE(few && many);
    // Five times the items, a fiftieth of the items apart: a search through them would need
    // five times as long.
    EXPECT_LT(secondsOf(many, guids), 3 * secondsOf(few, guids) + 0.05);
    m_manager->Forget(kPipes);
}

TEST_F(CatalogueSize, AddingAndDeletingCostNoMoreAmongManySiblings) {
    const auto secondsOf = [](int siblings) {
        CCatalog catalog;
        for (int i = 0; i < siblings; ++i)
            catalog.AddItem(boost::make_shared<CCatalogItem>(
                Platform::FromUtf8("s" + std::to_string(i)).c_str(), u"", 0));
        const auto start = std::clock();
        for (int i = 0; i < 20000; ++i) {
            const CString guid = Platform::FromUtf8("x" + std::to_string(i));
            EXPECT_EQ(catalog.AddItem(boost::make_shared<CCatalogItem>(guid.c_str(), u"", 0)), 1);
            EXPECT_EQ(catalog.DeleteItem(guid.c_str()), 1);
        }
        return SecondsSince(start);
    };
    EXPECT_LT(secondsOf(100000), 5 * secondsOf(100) + 0.1);
}

TEST_F(CatalogueSize, ALoadedCatalogueOfManyItemsIsSavedAsItWasWritten) {
    const CatalogPtr catalog = Load(Catalogue(1));
    ASSERT_EQ(Save(), 1);
    const std::string written = Written();
    ASSERT_EQ(Load()->GetItemCount(), kItems);
    ASSERT_EQ(Save(), 1);
    EXPECT_TRUE(Written() == written);
    m_manager->Forget(kPipes);
}

} // namespace
} // namespace ZEBGis::Data
