// SPDX-License-Identifier: MIT
// Real trees and lists of others, from one workstation over the repository to another: item by
// item, and against a reading of their sources that shares no line with this system.
#include "Content.h"
#include "support/Python.h"

#include <algorithm>
#include <gmock/gmock.h>

using namespace AppTest;

namespace {

const char* const kCatalogues[] = {"PRESETS_CATALOG", "SUBDIVISIONS_CATALOG", "CODELISTS_CATALOG"};

// Prints "reference items groups levels" for each catalogue, or the first difference between the
// pulled file and its source: items in order, each with its names from the top and its values.
const char* const kCompare = R"(
import itertools, pathlib, re, sys
import xml.etree.ElementTree as E

sources, pulled = (pathlib.Path(line) for line in sys.stdin.read().splitlines())
LOCAL = re.compile(r'\{.*\}')

def local(element):
    return LOCAL.sub('', element.tag)

def root_of(path):
    # Two attributes hold a bare "&".
    text = re.sub(r'&(?!#|\w+;)', '&amp;', path.read_text(encoding='utf-8'))
    return E.fromstring(text)

def presets(element, path):
    for child in element:
        if local(child) in ('group', 'item'):
            below = path + [child.get('name')]
            values = {k: v for k, v in child.attrib.items() if k != 'name'}
            for key in child:
                if local(key) == 'key':
                    values['tag:' + key.get('key')] = key.get('value')
            yield below, local(child) == 'group', values
            yield from presets(child, below)

def subdivisions(element):
    for country in element:
        yield [country.get('code')], True, {}
        for kind in country:
            names = [country.get('code'), kind.get('type')]
            yield names, True, {}
            for entry in kind:
                values = {k: v for k, v in entry.attrib.items() if k != 'name'}
                yield names + [entry.get('name')], False, values

GML = '{http://www.opengis.net/gml}'

def codelists(folder):
    for file in sorted(folder.iterdir()):
        root = root_of(file)
        name = root.get(GML + 'id')
        yield [name], True, {'codeSpace': root.find(GML + 'identifier').get('codeSpace')}
        for code in root.iter(GML + 'Definition'):
            identifier = code.find(GML + 'identifier')
            yield [name, identifier.text], False, {
                'gml:id': code.get(GML + 'id'), 'codeSpace': identifier.get('codeSpace')}

def items(element, path, parent):
    for item in element.findall('item'):
        assert item.get('parent') == parent, item.attrib
        below = path + [item.get('name')]
        values = {p.get('name'): p.get('value') for p in item.findall('property')}
        yield below, item.get('group') == 'yes', values
        yield from items(item, below, item.get('guid'))

EXPECTED = {
    'PRESETS_CATALOG': presets(root_of(sources / 'osm-presets/defaultpresets.xml'), []),
    'SUBDIVISIONS_CATALOG': subdivisions(root_of(sources / 'iso-codes/iso_3166-2.xml')),
    'CODELISTS_CATALOG': codelists(sources / 'utility-codelists'),
}
for reference, expected in EXPECTED.items():
    root = E.parse(pulled / (reference + '.xml')).getroot()
    count = groups = levels = 0
    guids = {item.get('guid') for item in root.iter('item')}
    for want, have in itertools.zip_longest(expected, items(root, [], None)):
        if want != have:
            print(reference, 'expected', want, 'but found', have)
            sys.exit()
        count, groups, levels = count + 1, groups + want[1], max(levels, len(want[0]))
    assert len(guids) == count
    print(reference, count, groups, levels)
)";

class CatalogueData : public testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(m_sources))
            GTEST_SKIP() << "no real catalogues in " << m_sources;
        for (const Station* station : {&ana, &ivan})
            ASSERT_EQ(station->Zebx({"init"}).status, 0);
        ASSERT_EQ(ana.Zebx({"connect", "--create"}).status, 0);
        ASSERT_EQ(ivan.Zebx({"connect", "sqlite:" + ana.Repository().string()}).status, 0);
        const std::string command = std::string(ZEBX_CONVERT_CATALOGUES) + " " +
                                    m_sources.string() + " " + ana.Support().string() +
                                    " >/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0);
        fs::create_directories(ivan.Support());
        fs::copy(ana.Support() / "Catalogues.xml", ivan.Support() / "Catalogues.xml",
                 fs::copy_options::overwrite_existing);
    }

    static fs::path Folder(const Station& station) { return station.Support() / "Catalogues"; }
    static std::string File(const Station& station, const std::string& reference) {
        return Bytes(Folder(station) / (reference + ".xml"));
    }
    std::string Comparison() const {
        return PythonSays(kCompare, m_sources.string() + "\n" + Folder(ivan).string() + "\n");
    }

    const fs::path m_sources = ZEBX_SHARED_DATA "/catalogues";
    Station ana;
    Station ivan;
};

TEST_F(CatalogueData, ComesOutItemByItemAsItsSourcesHaveIt) {
    const Ended push = ana.Zebx({"push", "catalogues"});
    ASSERT_EQ(push.status, 0) << push;
    const Ended pull = ivan.Zebx({"pull", "catalogues"});
    ASSERT_EQ(pull.status, 0) << pull;
    for (const char* reference : kCatalogues)
        EXPECT_TRUE(File(ana, reference) == File(ivan, reference)) << reference;
    EXPECT_EQ(Comparison(), "PRESETS_CATALOG 950 71 4\n"
                            "SUBDIVISIONS_CATALOG 5682 565 3\n"
                            "CODELISTS_CATALOG 162 19 2\n");

    const auto before = Tree(ivan.Support());
    const auto written = fs::last_write_time(Folder(ivan) / "SUBDIVISIONS_CATALOG.xml");
    const Ended again = ivan.Zebx({"pull", "catalogues"});
    ASSERT_EQ(again.status, 0) << again;
    EXPECT_TRUE(Tree(ivan.Support()) == before) << "a second pull changed something";
    EXPECT_EQ(fs::last_write_time(Folder(ivan) / "SUBDIVISIONS_CATALOG.xml"), written);
}

TEST_F(CatalogueData, ASecondPushAndWhatWasPulledFindNothingChanged) {
    ASSERT_EQ(ana.Zebx({"push", "catalogues"}).status, 0);
    ASSERT_EQ(ivan.Zebx({"pull", "catalogues"}).status, 0);
    for (const Station* station : {&ana, &ivan})
        EXPECT_EQ(station->Zebx({"diff", "catalogues"}).status, 0);
    const Ended push = ivan.Zebx({"push", "catalogues"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(push.out, testing::HasSubstr("Nothing changed"));
}

// The comparison finds a difference when there is one.
TEST_F(CatalogueData, AChangedItemIsFound) {
    ASSERT_EQ(ana.Zebx({"push", "catalogues"}).status, 0);
    ASSERT_EQ(ivan.Zebx({"pull", "catalogues"}).status, 0);
    std::string text = File(ivan, "SUBDIVISIONS_CATALOG");
    const std::size_t found = text.find("Bikini &amp; Kili");
    ASSERT_NE(found, std::string::npos);
    Write(Folder(ivan) / "SUBDIVISIONS_CATALOG.xml", text.replace(found, 6, "Atolls"));
    EXPECT_THAT(Comparison(), testing::AllOf(testing::HasSubstr("Bikini & Kili"),
                                             testing::HasSubstr("Atolls & Kili")));
    EXPECT_EQ(ivan.Zebx({"diff", "catalogues"}).status, 1);
    ASSERT_EQ(ivan.Zebx({"pull", "catalogues"}).status, 0);
    EXPECT_TRUE(File(ana, "SUBDIVISIONS_CATALOG") == File(ivan, "SUBDIVISIONS_CATALOG"));
}

} // namespace
