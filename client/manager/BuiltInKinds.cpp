// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include <boost/make_shared.hpp>

namespace Repository {
namespace {

struct DrawingKind {
    const char16_t* id;
    int msgNum;
    const char16_t* subfolder;
    int optional;
};

constexpr DrawingKind kDrawingKinds[] = {
    {u"001_LABEL", 10313, u"label", 0},
    {u"002_NODE", 10314, u"nodes", 0},
    {u"003_PIPE", 10315, u"PipeCatalogueBlocks", 0},
    {u"004_SYMBOL", 10316, u"symbol", 0},
    {u"005_GPEBLOCKS", 10385, u"GPE", 1},
};

struct ConfigurationKind {
    const char16_t* id;
    int msgNum;
    int optional;
    const char16_t* fileName;
    const char16_t* dependentNcf; // null: none
};

constexpr ConfigurationKind kConfigurationKinds[] = {
    {u"001_PUMPCURVE", 10321, 1, u"ZEBXCurveCatalog.xml", nullptr},
    {u"002_TERRAINTYPE", 10324, 1, u"ZEBXTerrainType.cfg", nullptr},
    {u"003_MANHOLE_RULES", 10325, 1, u"importMappings_Manhole.xml", nullptr},
    {u"004_PIPE_RULES", 10326, 1, u"importMappings_Pipe.xml", nullptr},
    // The only mandatory one: kept, every installation has a topology.
    {u"005_TOPOLOGY_CONFIG", 7082, 0, u"topologyConfiguration.xml", u"002_NODE"},
    {u"006_ALIGNPREVIEW", 10328, 1, u"AxisPreviews.xml", nullptr},
    {u"007_ALIGNLABEL", 10329, 1, u"GeoLabelDef.xml", nullptr},
    {u"008_GPE", 10174, 1, u"GPEConfiguration.xml", u"005_GPEBLOCKS"},
};

} // namespace

void CRepositoryStorageManager::RegisterBuiltInNCFKinds() {
    for (const DrawingKind& row : kDrawingKinds)
        RegisterNCFMetadata(boost::make_shared<CNCFMetadata>(row.id, row.msgNum, BaseFolderSupport,
                                                             row.subfolder, NCFTypePattern,
                                                             u"*.dwg", row.optional));
}

void CRepositoryStorageManager::RegisterBuiltInFOCKinds() {
    for (const ConfigurationKind& row : kConfigurationKinds) {
        const auto kind = boost::make_shared<CFOCMetadata>(row.id, row.msgNum, BaseFolderSupport,
                                                           u"", u"", row.optional);
        kind->GetFileNames().push_back(row.fileName);
        if (row.dependentNcf)
            kind->GetDependentNCFs().push_back(row.dependentNcf);
        RegisterFOCMetadata(kind);
    }
}

} // namespace Repository
