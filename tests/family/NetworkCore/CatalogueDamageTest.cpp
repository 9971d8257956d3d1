// SPDX-License-Identifier: MIT
// Files damaged at random, the same way each time: each is refused with a reason, or read in a
// way that saving and reading again does not change.
#include "Catalogues.h"

#include "support/DocumentExample.h"

namespace ZEBGis::Data {
namespace {

// Everything that an item is, and what stands below it.
CString AllOf(const CCatalog& catalog) {
    CString all;
    for (const CatalogItemPtr& item : catalog.GetSortedRootElements())
        all += XmlOf(*item) + u"\n";
    return all;
}

std::string Damaged(std::string text, std::mt19937& random) {
    static const std::string pieces[] = {"<",
                                         ">",
                                         "\"",
                                         "&",
                                         "&#0;",
                                         "&#10;",
                                         "<item guid='x'>",
                                         "</item>",
                                         "<!--",
                                         "-->",
                                         "]]>",
                                         "<?xml",
                                         "<![CDATA[a",
                                         "?>",
                                         " guid='a'",
                                         "\xE8",
                                         "\x01",
                                         "parent='b'",
                                         "group='maybe'",
                                         "text",
                                         "č",
                                         "/>",
                                         "<property/>",
                                         "\r\n"};
    for (auto times = random() % 3 + 1; times > 0; --times) {
        const std::size_t at = random() % (text.size() + 1);
        switch (random() % 4) {
        case 0:
            text.erase(at, random() % 30);
            break;
        case 1:
            text.insert(at, text.substr(random() % text.size(), random() % 200));
            break;
        default:
            text.insert(at, pieces[random() % std::size(pieces)]);
        }
        if (text.empty())
            text = "<";
    }
    return text;
}

using CatalogueDamage = Catalogues;

TEST_F(CatalogueDamage, ADamagedFileIsRefusedOrReadForGood) {
    const std::string whole = DocumentExample("catalogue") + "\n";
    std::mt19937 random(20261121);
    int refused = 0, read = 0;
    for (int i = 0; i < 1500; ++i) {
        const std::string damaged = Damaged(whole, random);
        Write(damaged);
        const CatalogPtr catalog = Load();
        if (!catalog) {
            ++refused;
            EXPECT_THAT(Problem(), testing::HasSubstr(m_file.string())) << damaged;
            EXPECT_EQ(Written(), damaged);
            continue;
        }
        ++read;
        EXPECT_EQ(Problem(), "");
        const CString before = AllOf(*catalog);
        ASSERT_EQ(m_manager->Save(kPipes, 0, 0), 1) << damaged << "\n" << Problem();
        const std::string saved = Written();
        const CatalogPtr again = Load();
        ASSERT_TRUE(again) << damaged << "\n" << saved << "\n" << Problem();
        EXPECT_EQ(Platform::ToUtf8(AllOf(*again)), Platform::ToUtf8(before)) << damaged;
        ASSERT_EQ(m_manager->Save(kPipes, 0, 0), 1);
        EXPECT_EQ(Written(), saved) << damaged;
    }
    EXPECT_GT(refused, 100);
    EXPECT_GT(read, 100);
}

TEST_F(CatalogueDamage, ADamagedItemTextIsRefusedOrReadForGood) {
    const std::string whole = DocumentExample("catalogue-item");
    std::mt19937 random(11);
    int refused = 0, read = 0;
    for (int i = 0; i < 3000; ++i) {
        const CString damaged = Platform::FromUtf8(Damaged(whole, random));
        const CatalogItemPtr item = m_manager->ParseCatalogItem(damaged.c_str(), {}, {});
        ++(item ? read : refused);
        if (!item) {
            EXPECT_NE(Problem(), "");
            continue;
        }
        const CString xml = XmlOf(*item);
        const CatalogItemPtr again = Parse(xml);
        ASSERT_TRUE(again) << Platform::ToUtf8(damaged) << "\n" << Platform::ToUtf8(xml);
        EXPECT_EQ(Platform::ToUtf8(XmlOf(*again)), Platform::ToUtf8(xml))
            << Platform::ToUtf8(damaged);
    }
    EXPECT_GT(refused, 100);
    EXPECT_GT(read, 100);
}

} // namespace
} // namespace ZEBGis::Data
