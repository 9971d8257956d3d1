// SPDX-License-Identifier: MIT
// Two workstations on one repository, with a catalogue that both declare.
#pragma once

#include "Station.h"

#include <gtest/gtest.h>

namespace AppTest {

// Items and files of "TEST_CATALOG" lie where these say.
inline const char* const kDeclaration =
    R"(<catalogues>
  <catalogue reference="TEST_CATALOG">
    <name language="en">Test parts</name>
    <name language="hr">Probni dijelovi</name>
    <files base="support" folder="TestFiles" properties="PICTURE SHEET"/>
  </catalogue>
  <catalogue reference="OTHER_CATALOG"><name language="en">Other parts</name></catalogue>
</catalogues>
)";

// A group with two members, and an item beside it, in an order that is not alphabetical.
inline const char* const kParts =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<catalogue reference="TEST_CATALOG">
  <item guid="G" name="Valves" group="yes">
    <item guid="G2" name="Gate valve" group="no" parent="G">
      <property name="DN" type="integer" value="100"/>
      <property name="PICTURE" value="gate.png"/>
    </item>
    <item guid="G1" name="Ball valve" group="no" parent="G"/>
  </item>
  <item guid="A" name="Hydrant" group="no">
    <property name="SHEET" value="hydrant.pdf"/>
  </item>
</catalogue>
)";

class CatalogueStations : public testing::Test {
protected:
    CatalogueStations() {
        EXPECT_EQ(ana.Zebx({"init"}).status, 0);
        EXPECT_EQ(ivan.Zebx({"init"}).status, 0);
        EXPECT_EQ(ana.Zebx({"connect", "--create"}).status, 0);
        EXPECT_EQ(ivan.Zebx({"connect", "sqlite:" + ana.Repository().string()}).status, 0);
        Write(ana.Support() / "Catalogues.xml", kDeclaration);
        Write(ivan.Support() / "Catalogues.xml", kDeclaration);
    }

    static fs::path Catalogue(const Station& station, const std::string& reference) {
        return station.Support() / "Catalogues" / (reference + ".xml");
    }
    static fs::path Parts(const Station& station) { return Catalogue(station, "TEST_CATALOG"); }

    // Ana's catalogue with its two files.
    void WriteParts() const {
        WriteCatalogue(kParts);
        fs::create_directories(ana.Support() / "TestFiles");
        Write(ana.Support() / "TestFiles/gate.png", "picture");
        Write(ana.Support() / "TestFiles/hydrant.pdf", "sheet");
    }
    void WriteCatalogue(std::string_view text,
                        const std::string& reference = "TEST_CATALOG") const {
        fs::create_directories(ana.Support() / "Catalogues");
        Write(Catalogue(ana, reference), text);
    }

    Station ana;
    Station ivan;
};

} // namespace AppTest
