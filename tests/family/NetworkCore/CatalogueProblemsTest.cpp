// SPDX-License-Identifier: MIT
#include "Catalogues.h"

namespace ZEBGis::Data {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class CatalogueProblems : public Catalogues {
protected:
    // Expects that the file is refused by its name, with all of these words, and left alone.
    void ExpectRefused(const std::string& xml, const std::vector<std::string>& words) {
        Write(xml);
        EXPECT_FALSE(Load()) << xml;
        EXPECT_THAT(Problem(), HasSubstr(m_file.string()));
        for (const std::string& word : words)
            EXPECT_THAT(Problem(), HasSubstr(word));
        EXPECT_EQ(Save(), 0);
        EXPECT_EQ(Written(), xml);
    }
    static std::string InCatalogue(const std::string& items) {
        return "<?xml version=\"1.0\"?>\n<catalogue reference=\"PIPES_CATALOG\">\n" + items +
               "\n</catalogue>\n";
    }
};

TEST_F(CatalogueProblems, TwoItemsOfOneGuid) {
    ExpectRefused(InCatalogue("<item guid='a' name='first'/>\n<item guid='a' name='second'/>"),
                  {"line 4", "item \"second\" (a)", "same GUID"});
    ExpectRefused(InCatalogue("<item guid='a'>\n<item guid='b'><item guid='a' name='in'/></item>"
                              "</item>"),
                  {"line 4", "item \"in\" (a)", "same GUID"});
}

TEST_F(CatalogueProblems, AnItemWithoutAGuid) {
    ExpectRefused(InCatalogue("<item name='first'/>"), {"line 3", "item \"first\" ()", "no GUID"});
    ExpectRefused(InCatalogue("<item name='first' guid=''/>"), {"line 3", "no GUID"});
}

TEST_F(CatalogueProblems, AParentThatIsMissing) {
    ExpectRefused(InCatalogue("<item guid='a'/>\n<item guid='b' name='n' parent='z'/>"),
                  {"line 4", "item \"n\" (b)", "parent \"z\" is not in the file"});
}

TEST_F(CatalogueProblems, AParentThatContradictsTheItemsPlace) {
    ExpectRefused(InCatalogue("<item guid='a'>\n<item guid='b' name='n' parent='c'/></item>\n"
                              "<item guid='c'/>"),
                  {"line 4", "item \"n\" (b)", "\"c\" as its parent"});
}

TEST_F(CatalogueProblems, ALoopOfParents) {
    ExpectRefused(InCatalogue("<item guid='a' name='n' parent='a'/>"),
                  {"line 3", "item \"n\" (a)", "\"a\" stands below the item itself"});
    ExpectRefused(InCatalogue("<item guid='a' parent='b'/>\n<item guid='b' parent='c'/>\n<item "
                              "guid='c' name='n' parent='a'/>"),
                  {"line 5", "item \"n\" (c)", "stands below the item itself"});
    ExpectRefused(InCatalogue("<item guid='a' parent='b'>\n<item guid='b'/></item>"),
                  {"line 3", "(a)", "stands below the item itself"});
}

TEST_F(CatalogueProblems, AGroupThatIsNeitherYesNorNo) {
    ExpectRefused(InCatalogue("<item guid='a' name='n' group='perhaps'/>"),
                  {"line 3", "item \"n\" (a)", "group is \"perhaps\""});
}

TEST_F(CatalogueProblems, AFileThatEndsInTheMiddle) {
    const std::string whole = InCatalogue("<item guid='a' name='n'><property name='p'/></item>");
    for (std::size_t size = whole.size() - 2; size > 25; --size)
        ExpectRefused(whole.substr(0, size), {"line "});
    ExpectRefused(whole.substr(0, whole.find("\n</cat")), {"line 3", "ends before"});
}

TEST_F(CatalogueProblems, AFileThatIsNoCatalogue) {
    ExpectRefused("", {"empty"});
    ExpectRefused("just text", {"line 1"});
    ExpectRefused("<?xml version=\"1.0\"?>\n", {"no well-formed XML"});
    ExpectRefused("<definitions/>", {"\"definitions\" and should be \"catalogue\""});
    ExpectRefused("<catalogue reference=\"VALVES_CATALOG\"/>", {"line 1", "\"VALVES_CATALOG\""});
    ExpectRefused("<catalogue/><catalogue/>", {"only one element"});
    ExpectRefused("<catalogue/>\ntext", {"only one element"});
    ExpectRefused(InCatalogue("<item guid='a'>\n</itme>"), {"line 4", "no well-formed XML"});
    ExpectRefused(InCatalogue("<item guid='a' name='b' name='c'/>"),
                  {"line 3", "\"name\" stands twice"});
    ExpectRefused(InCatalogue("<other>\n<deep a='1' a='2'/></other>"),
                  {"line 4", "\"a\" stands twice"});
    ExpectRefused("<!DOCTYPE catalogue [<!ENTITY e 'x'>]>\n<catalogue/>", {"document type"});
    ExpectRefused(InCatalogue("<item guid='a' name='x&#0;y'/>"), {"line 3", "&#0;"});
    ExpectRefused(InCatalogue("<item guid='a' name='x&#x1;y'/>"),
                  {"line 3", "item ", "(a)", "U+0001"});
    ExpectRefused(InCatalogue("<item guid='a' name='n'><other>&#xFFFE;</other></item>"),
                  {"line 3", "item \"n\" (a)", "U+FFFE"});
}

TEST_F(CatalogueProblems, AQuoteThatIsMissing) {
    ExpectRefused(InCatalogue("<item guid='a' name='n>\n<item guid='b'/></item>"), {"line 4"});
    ExpectRefused(InCatalogue("<item guid='a' name='n'>\n<property name=\"p\" value=\"1/>"
                              "\n<property name=\" value=\"2\"/></item>"),
                  {"line 5", "no well-formed XML"});
    EXPECT_TRUE(Load(InCatalogue("<!-- 'a' < \"b --><?tool <x> \"?><a><![CDATA[<'>]]></a>"
                                 "<item guid='a' name='>\"'/>")));
}

TEST_F(CatalogueProblems, BytesThatAreNoText) {
    ExpectRefused(InCatalogue("<item guid='a' name='\xE8'/>"), {"byte ", "line 3", "UTF-8"});
    ExpectRefused("<?xml version=\"1.0\" encoding=\"KOI8-R\"?><catalogue/>", {"\"KOI8-R\""});
    ExpectRefused(std::string("<catalogue/>\0", 13), {"U+0000"});
}

TEST_F(CatalogueProblems, ItemsNestedTooDeep) {
    std::string nested, flat, other;
    for (int i = 1; i <= 201; ++i) {
        nested += "<item guid='" + std::to_string(i) + "'>";
        flat += "<item guid='" + std::to_string(i) + "' parent='" +
                (i == 1 ? "" : std::to_string(i - 1)) + "'/>";
    }
    for (int i = 1; i <= 201; ++i)
        nested += "</item>";
    ExpectRefused(InCatalogue(nested), {"(201)", "more than 200 levels"});
    ExpectRefused(InCatalogue(flat), {"(201)", "more than 200 levels"});
    for (int i = 0; i < 100000; ++i)
        other += "<a>";
    for (int i = 0; i < 100000; ++i)
        other += "</a>";
    ExpectRefused(InCatalogue(other), {"more than 200 levels"});
}

TEST_F(CatalogueProblems, TwoHundredLevelsAreAccepted) {
    std::string nested;
    for (int i = 1; i <= 200; ++i)
        nested += "<item guid='" + std::to_string(i) + "'>";
    nested += "<property name='p' value='v'/>";
    for (int i = 1; i <= 200; ++i)
        nested += "</item>";
    const CatalogPtr catalog = Load(InCatalogue(nested));
    EXPECT_EQ(PropertyOf(catalog->GetItembyGuid(u"200"), u"p"), u"v");
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(Load()->GetItemCount(), 200u);
    m_manager->Forget(kPipes);
}

TEST_F(CatalogueProblems, ReferencesThatAreNoneAreText) {
    const CatalogPtr catalog =
        Load(InCatalogue("<item guid='a' name='Salt & Pepper &unknown; &#; &#xZZ; &#65'/>"));
    EXPECT_EQ(catalog->GetItembyGuid(u"a")->GetName(), u"Salt & Pepper &unknown; &#; &#xZZ; &#65");
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(Load()->GetItembyGuid(u"a")->GetName(), u"Salt & Pepper &unknown; &#; &#xZZ; &#65");
}

TEST_F(CatalogueProblems, AFolderInTheFilesPlace) {
    std::filesystem::create_directory(m_file);
    EXPECT_FALSE(Load());
    EXPECT_THAT(Problem(), AllOf(HasSubstr(m_file.string()), HasSubstr("a folder")));
}

TEST_F(CatalogueProblems, AProblemGoesAwayWithItsCause) {
    ExpectRefused("<catalogue>", {"line 1"});
    EXPECT_TRUE(Load("<catalogue/>"));
    EXPECT_EQ(Problem(), "");
}

TEST_F(CatalogueProblems, ProblemsComeInTheUsersLanguage) {
    m_station.Set("ZEBX_LANGUAGE", "hr");
    ExpectRefused(InCatalogue("<item guid='a' name='n' parent='z'/>"),
                  {"redak 3", "stavka \"n\" (a)", "nadređene stavke \"z\" nema u datoteci"});
}

} // namespace
} // namespace ZEBGis::Data
