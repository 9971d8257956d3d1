// SPDX-License-Identifier: MIT
// Items of every record, made up the same way each time, written and read.
#include "RepositoryFiles.h"
#include "ZEBXRepositoryClient/Base64.h"
#include "ZEBXRepositoryClient/NetCatalogueItem.h"
#include "ZEBXRepositoryClient/NetRepositoryItem.h"
#include "platform/text/Windows1250.h"
#include "support/Bytes.h"

#include <limits>

using namespace Repository;

namespace {

constexpr unsigned kItems = 1000;
constexpr CStringView kSeparators = u"#$|@\"<&";

class Maker {
public:
    explicit Maker(unsigned seed) : m_random(seed) {}

    std::size_t Below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }

    std::int32_t Number() {
        constexpr std::int32_t kEdges[] = {std::numeric_limits<std::int32_t>::min(), -1, 0, 1,
                                           std::numeric_limits<std::int32_t>::max()};
        return Below(2) ? kEdges[Below(5)] : static_cast<std::int32_t>(m_random());
    }

    // Any characters of the code page but NUL: what a base64 text keeps.
    CString FreeText() {
        std::string bytes = SomeBytes(Below(40), static_cast<unsigned>(m_random()));
        for (char& byte : bytes)
            byte = byte == 0 ? 'x' : byte;
        return Platform::FromAnsi(bytes);
    }

    // The same without the characters that the records are made of.
    CString PlainText() {
        CString text = FreeText();
        for (char16_t& unit : text)
            unit = kSeparators.find(unit) != kSeparators.npos ? u'š' : unit;
        return text;
    }

    // A plain text with any code units at all, halves of pairs too.
    CString WidePlainText() {
        CString text = PlainText();
        for (std::size_t i = Below(5); i > 0; --i)
            text += static_cast<char16_t>(Below(0xFF00) + 0x100);
        return text;
    }

    std::string Content() {
        const std::string bytes = SomeBytes(Below(100), static_cast<unsigned>(m_random()));
        return Base64Encode(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }

    // `plain` makes the fields that are written as they stand.
    CRepositoryFile File(CString (Maker::*plain)()) {
        CRepositoryFile file;
        file.SetFileId((this->*plain)().c_str());
        file.SetFileManagerId((this->*plain)().c_str());
        file.SetOriginId((this->*plain)().c_str());
        file.SetFileName((this->*plain)().c_str());
        file.SetCustomParameter(FreeText().c_str());
        file.SetFileContent(Content());
        file.SetFileType(static_cast<enmFileType>(Number()));
        return file;
    }

    void AddFiles(std::vector<boost::shared_ptr<CRepositoryFile>>& files,
                  CString (Maker::*plain)()) {
        for (std::size_t i = Below(4); i > 0; --i)
            files.push_back(boost::make_shared<CRepositoryFile>(File(plain)));
    }

    CNetRepositoryItem Definition() {
        CNetRepositoryItem item;
        item.SetId(WidePlainText().c_str());
        item.SetName(FreeText().c_str());
        item.SetEntityType(Number());
        item.SetTopologyFunction(Number());
        item.SetTopologyType(Number());
        item.SetConfigurationXML(FreeText().c_str());
        item.SetRepositoryName(FreeText().c_str());
        item.SetRepositoryTag(FreeText().c_str());
        AddFiles(*item.GetFiles(), &Maker::WidePlainText);
        return item;
    }

    CNetCatalogueItem CatalogueItem() {
        CNetCatalogueItem item;
        item.SetCatalogueId(WidePlainText().c_str());
        item.SetCatalogueTag(WidePlainText().c_str());
        item.SetIsGroup(Number());
        item.SetParentId(WidePlainText().c_str());
        item.SetName(WidePlainText().c_str());
        item.SetCatalogueName(WidePlainText().c_str());
        item.SetItemContent(FreeText().c_str());
        AddFiles(*item.GetFiles(), &Maker::PlainText); // they go through the code page
        return item;
    }

private:
    std::mt19937 m_random;
};

void ExpectSameFiles(const std::vector<boost::shared_ptr<CRepositoryFile>>& files,
                     const std::vector<boost::shared_ptr<CRepositoryFile>>& expected) {
    ASSERT_EQ(files.size(), expected.size());
    for (std::size_t i = 0; i < files.size(); ++i)
        ExpectEqual(*files[i], *expected[i]);
}

} // namespace

TEST(RandomItems, FilesComeBackFromTheWideRecord) {
    for (unsigned seed = 0; seed < kItems; ++seed) {
        SCOPED_TRACE(seed);
        const CRepositoryFile file = Maker(seed).File(&Maker::WidePlainText);
        CRepositoryFile read = FileNamed(u"before");
        EXPECT_EQ(read.Deserialize(RecordOf(file).c_str()), 1);
        ExpectEqual(read, file);
    }
}

TEST(RandomItems, FilesComeBackFromTheNarrowRecord) {
    for (unsigned seed = 0; seed < kItems; ++seed) {
        SCOPED_TRACE(seed);
        const CRepositoryFile file = Maker(seed).File(&Maker::PlainText);
        CRepositoryFile read = FileNamed(u"before");
        EXPECT_EQ(read.Deserialize(Platform::ToAnsi(RecordOf(file))), 1);
        ExpectEqual(read, file);
    }
}

TEST(RandomItems, DefinitionsComeBackWithOneEmptyFileMore) {
    for (unsigned seed = 0; seed < kItems; ++seed) {
        SCOPED_TRACE(seed);
        CNetRepositoryItem item = Maker(seed).Definition();
        CNetRepositoryItem read;
        EXPECT_EQ(read.Deserialize(item.Serialize().c_str()), 1);
        EXPECT_EQ(read.GetId(), item.GetId());
        EXPECT_EQ(read.GetName(), item.GetName());
        EXPECT_EQ(read.GetEntityType(), item.GetEntityType());
        EXPECT_EQ(read.GetTopologyFunction(), item.GetTopologyFunction());
        EXPECT_EQ(read.GetTopologyType(), item.GetTopologyType());
        EXPECT_EQ(read.GetConfigurationXML(), item.GetConfigurationXML());
        EXPECT_EQ(read.GetRepositoryName(), item.GetRepositoryName());
        EXPECT_EQ(read.GetRepositoryTag(), item.GetRepositoryTag());
        item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>());
        ExpectSameFiles(*read.GetFiles(), *item.GetFiles());
    }
}

TEST(RandomItems, CatalogueItemsComeBackFromEitherForm) {
    for (unsigned seed = 0; seed < kItems; ++seed) {
        SCOPED_TRACE(seed);
        CNetCatalogueItem item = Maker(seed).CatalogueItem();
        WStringStream stream;
        item.Serialize(stream);
        for (const CString& text : {item.Serialize(), stream.str()}) {
            CNetCatalogueItem read;
            EXPECT_EQ(read.Deserialize(text.c_str()), 1);
            EXPECT_EQ(read.GetCatalogueId(), item.GetCatalogueId());
            EXPECT_EQ(read.GetCatalogueTag(), item.GetCatalogueTag());
            EXPECT_EQ(read.GetIsGroup(), item.GetIsGroup());
            EXPECT_EQ(read.GetParentId(), item.GetParentId());
            EXPECT_EQ(read.GetName(), item.GetName());
            EXPECT_EQ(read.GetCatalogueName(), item.GetCatalogueName());
            EXPECT_EQ(read.GetItemContent(), item.GetItemContent());
            ExpectSameFiles(*read.GetFiles(), *item.GetFiles());
        }
    }
}
