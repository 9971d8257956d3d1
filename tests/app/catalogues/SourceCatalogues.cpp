// SPDX-License-Identifier: MIT
#include "SourceCatalogues.h"

#include "platform/os/UserSettings.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstdio>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <stdlib.h>

#include <pugixml.hpp>

namespace AppTest {
namespace {

using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalog;
using ZEBGis::Data::CCatalogItem;
using ZEBGis::Data::CCatalogManager;
using ZEBGis::Data::CDataBox;

CString Wide(const std::string& text) {
    return Platform::FromUtf8(text);
}

// 64 bits of the text's, well spread (FNV-1a).
std::uint64_t Spread(const std::string& text, std::uint64_t start) {
    for (const char c : text)
        start = (start ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    return start;
}

// In the form of a GUID, the same for the same path.
CString GuidOf(const std::string& path) {
    const auto high = static_cast<unsigned long long>(Spread(path, 0xCBF29CE484222325u));
    const auto low = static_cast<unsigned long long>(Spread(path, 0x84222325CBF29CE4u));
    char guid[40];
    std::snprintf(guid, sizeof(guid), "{%08llX-%04llX-%04llX-%04llX-%012llX}", high >> 32,
                  high >> 16 & 0xFFFF, high & 0xFFFF, low >> 48, low & 0xFFFFFFFFFFFF);
    return Wide(guid);
}

// A place in the catalogue that is being made: where items go, and its path.
class Place {
public:
    explicit Place(CCatalog& catalog, const std::string& source)
        : m_path(source), m_add([&catalog](const auto& item) { return catalog.AddItem(item); }) {}
    explicit Place(const CatalogItemPtr& item, std::string path)
        : m_path(std::move(path)),
          m_add([item](const auto& child) { return item->AddSubItem(child); }) {}

    // Adds an item; `id` tells it from the others of this place.
    std::pair<CatalogItemPtr, Place> Add(const std::string& id, const std::string& name,
                                         bool isGroup) const {
        const std::string path = m_path + "\n" + id;
        const auto item =
            boost::make_shared<CCatalogItem>(GuidOf(path).c_str(), Wide(name).c_str(), isGroup);
        if (!m_add(item))
            throw std::runtime_error("twice in its source: " + path);
        return {item, Place(item, path)};
    }

private:
    std::string m_path;
    std::function<int(const CatalogItemPtr&)> m_add;
};

void SetText(const CatalogItemPtr& item, const std::string& name, const std::string& value) {
    item->SetProperty(Wide(name).c_str(), CDataBox::OfText(Wide(value).c_str()));
}

void SetAttributes(const CatalogItemPtr& item, const pugi::xml_node& node) {
    for (const pugi::xml_attribute& attribute : node.attributes())
        if (std::string_view(attribute.name()) != "name")
            SetText(item, attribute.name(), attribute.value());
}

pugi::xml_document Parsed(const fs::path& path, const char* root) {
    pugi::xml_document document;
    if (!document.load_file(path.c_str()) || !document.child(root))
        throw std::runtime_error(path.string() + ": no XML with the element " + root);
    return document;
}

void AddPresets(const Place& place, const pugi::xml_node& parent) {
    for (const pugi::xml_node& node : parent.children()) {
        const std::string_view kind = node.name();
        if (kind != "group" && kind != "item")
            continue;
        const std::string name = node.attribute("name").value();
        const auto [item, below] = place.Add(name, name, kind == "group");
        SetAttributes(item, node);
        for (const pugi::xml_node& key : node.children("key"))
            SetText(item, std::string("tag:") + key.attribute("key").value(),
                    key.attribute("value").value());
        AddPresets(below, node);
    }
}

void FillPresets(const fs::path& source, CCatalog& catalog) {
    const pugi::xml_document document = Parsed(source, "presets");
    AddPresets(Place(catalog, "presets"), document.child("presets"));
}

void FillSubdivisions(const fs::path& source, CCatalog& catalog) {
    const pugi::xml_document document = Parsed(source, "iso_3166_2_entries");
    const Place top(catalog, "subdivisions");
    for (const pugi::xml_node& country : document.child("iso_3166_2_entries").children()) {
        const std::string code = country.attribute("code").value();
        const auto [countryItem, kinds] = top.Add(code, code, true);
        for (const pugi::xml_node& subset : country.children()) {
            const std::string type = subset.attribute("type").value();
            const auto [typeItem, entries] = kinds.Add(type, type, true);
            for (const pugi::xml_node& entry : subset.children())
                SetAttributes(entries
                                  .Add(entry.attribute("code").value(),
                                       entry.attribute("name").value(), false)
                                  .first,
                              entry);
        }
    }
}

void FillCodeLists(const fs::path& source, CCatalog& catalog) {
    std::vector<fs::path> files(fs::directory_iterator(source), fs::directory_iterator{});
    std::ranges::sort(files);
    const Place top(catalog, "code lists");
    for (const fs::path& file : files) {
        const pugi::xml_document document = Parsed(file, "gml:Dictionary");
        const pugi::xml_node dictionary = document.child("gml:Dictionary");
        const std::string name = dictionary.attribute("gml:id").value();
        const auto [list, codes] = top.Add(name, name, true);
        SetText(list, "codeSpace",
                dictionary.child("gml:identifier").attribute("codeSpace").value());
        for (const pugi::xml_node& entry : dictionary.children("gml:dictionaryEntry")) {
            const pugi::xml_node code = entry.child("gml:Definition");
            const pugi::xml_node identifier = code.child("gml:identifier");
            const auto leaf =
                codes.Add(code.attribute("gml:id").value(), identifier.child_value(), false).first;
            SetText(leaf, "gml:id", code.attribute("gml:id").value());
            SetText(leaf, "codeSpace", identifier.attribute("codeSpace").value());
        }
    }
}

void Declare(const fs::path& support) {
    fs::create_directories(support);
    std::ofstream file(support / "Catalogues.xml", std::ios::binary);
    file << "<catalogues>\n";
    for (const SourceCatalogue& catalogue : SourceCatalogues())
        file << "  <catalogue reference=\"" << Platform::ToUtf8(catalogue.reference)
             << "\"><name language=\"en\">" << catalogue.englishName
             << "</name><name language=\"hr\">" << catalogue.croatianName
             << "</name></catalogue>\n";
    file << "</catalogues>\n";
    if (!file.flush())
        throw std::runtime_error("cannot write " + (support / "Catalogues.xml").string());
}

std::size_t Convert(const SourceCatalogue& source, const fs::path& sources) {
    CCatalogManager* manager = CCatalogManager::Instance();
    manager->Forget(source.reference);
    const auto catalog = manager->GetCatalog(source.reference, 1);
    if (!catalog)
        throw std::runtime_error(Platform::ToUtf8(manager->GetProblem()));
    // What an earlier conversion made.
    for (const CatalogItemPtr& item : catalog->GetSortedRootElements())
        catalog->DeleteItem(item->GetGUID().c_str());
    source.fill(sources / source.source, *catalog);
    if (!manager->Save(source.reference, 0, 0))
        throw std::runtime_error(Platform::ToUtf8(manager->GetProblem()));
    return catalog->GetItemCount();
}

} // namespace

const std::vector<SourceCatalogue>& SourceCatalogues() {
    static const std::vector<SourceCatalogue> catalogues = {
        {kPresets, "Map presets", "Predlošci karte", "osm-presets/defaultpresets.xml", FillPresets},
        {kSubdivisions, "Subdivisions of countries", "Upravne jedinice država",
         "iso-codes/iso_3166-2.xml", FillSubdivisions},
        {kCodeLists, "Code lists of utility networks", "Šifarnici komunalnih mreža",
         "utility-codelists", FillCodeLists}};
    return catalogues;
}

std::size_t ConvertCatalogues(const fs::path& sources, const fs::path& support) {
    Declare(support);
    setenv("ZEBX_SUPPORT", support.c_str(), 1);
    Platform::UserSettings::Instance()->Reset();
    std::size_t items = 0;
    for (const SourceCatalogue& source : SourceCatalogues())
        items += Convert(source, sources);
    return items;
}

} // namespace AppTest
