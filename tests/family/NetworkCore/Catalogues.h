// SPDX-License-Identifier: MIT
// A workstation with catalogues.
#pragma once

#include "ZEBXNetworkCore/CatalogManager.h"

#include "platform/text/Utf8.h"
#include "support/Bytes.h"
#include "support/Workstation.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ZEBGis::Data {

inline CatalogItemPtr Leaf(const char16_t* guid, const char16_t* name = u"leaf") {
    return boost::make_shared<CCatalogItem>(guid, name, 0);
}
inline CatalogItemPtr Group(const char16_t* guid, const char16_t* name = u"group") {
    return boost::make_shared<CCatalogItem>(guid, name, 1);
}

// The GUIDs in order, "a b(c d) e".
inline std::string TreeOf(const std::vector<CatalogItemPtr>& items) {
    std::string tree;
    for (const CatalogItemPtr& item : items) {
        tree += (tree.empty() ? "" : " ") + Platform::ToUtf8(item->GetGUID());
        if (!item->GetSubItems().empty())
            tree += "(" + TreeOf(item->GetSortedSubItems()) + ")";
    }
    return tree;
}
inline std::string TreeOf(const CCatalog& catalog) {
    return TreeOf(catalog.GetSortedRootElements());
}

inline CString XmlOf(const CCatalogItem& item) {
    WStringStream stream;
    item.GetXML(stream);
    return stream.str();
}

inline CString PropertyOf(const CatalogItemPtr& item, const char16_t* name) {
    const auto property = item->GetProperty(name);
    return property ? property->GetValue().ToText() : u"(no such property)";
}

// The catalogue of the pipes, which the installation declares.
class Catalogues : public testing::Test {
protected:
    static constexpr const char16_t* kPipes = u"PIPES_CATALOG";

    Catalogues() { std::filesystem::create_directories(m_folder); }

    void Write(std::string_view xml) const { MakeFile(m_file, xml); }
    std::string Written() const { return BytesOfFile(m_file); }

    // Reads the file anew.
    CatalogPtr Load() {
        m_manager->Forget(kPipes);
        return m_manager->GetCatalog(kPipes, 1);
    }
    // Reads a file of that content, which is expected to be one.
    CatalogPtr Load(std::string_view xml) {
        Write(xml);
        CatalogPtr catalog = Load();
        EXPECT_TRUE(catalog) << Problem();
        return catalog;
    }
    int Save() { return m_manager->Save(kPipes, 1, 1); }
    std::string Problem() const { return Platform::ToUtf8(m_manager->GetProblem()); }
    // An item of the text, which is expected to be one.
    CatalogItemPtr Parse(const CString& xml) {
        CatalogItemPtr item = m_manager->ParseCatalogItem(xml.c_str(), {}, {});
        EXPECT_TRUE(item) << Problem();
        return item;
    }

    Workstation m_station;
    std::filesystem::path m_support = Platform::NativePath(m_station.Support());
    std::filesystem::path m_folder = m_support / "Catalogues";
    std::filesystem::path m_file = m_folder / "PIPES_CATALOG.xml";
    CCatalogManager* m_manager = CCatalogManager::Instance();
};

} // namespace ZEBGis::Data
