// SPDX-License-Identifier: MIT
// A workstation whose installation declares a few definition repositories.
#pragma once

#include "ZEBXGisCore/RepositoryManager.h"
#include "platform/text/Utf8.h"
#include "support/Workstation.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

// Gives the repository back to its factory.
struct ReleasesDefinitions {
    void operator()(ZEBGis::CDefinitionRepository* repository) const {
        ZEBGis::CRepositoryManager::Instance()
            ->GetRepositoryfactory(tag.c_str())
            ->ReleaseRepository(repository);
    }
    CString tag;
};
using DefinitionsOfATag = std::unique_ptr<ZEBGis::CDefinitionRepository, ReleasesDefinitions>;

class DefinitionStation : public testing::Test {
protected:
    DefinitionStation() {
        const auto install = m_station.Folder().Native() / "install";
        std::filesystem::create_directories(install / "messages");
        for (const char* language : {"en", "hr"})
            std::filesystem::copy_file(std::filesystem::path(ZEBX_SOURCE_DIR) / "messages" /
                                           language,
                                       install / "messages" / language);
        m_station.Set("ZEBX_INSTALL", install.string());
        m_station.Set("ZEBX_LANGUAGE", "en");
        std::filesystem::create_directories(DefinitionsFolder());
    }

    std::filesystem::path Install() const { return m_station.Folder().Native() / "install"; }
    std::filesystem::path Support() const {
        return m_station.Folder().Native() / "data" / "StudioZEB" / "support";
    }
    std::filesystem::path DefinitionsFolder() const { return Support() / "Definitions"; }

    static void Write(const std::filesystem::path& path, std::string_view bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    static std::string Bytes(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    // One repository, T, that takes these entity types, and nothing else.
    void Declare(const std::string& entityTypes = "") const {
        Write(Install() / "Definitions.xml", "<definitions><repository tag=\"T\" entityTypes=\"" +
                                                 entityTypes + "\"/></definitions>");
    }
    std::filesystem::path File() const { return DefinitionsFolder() / "T.xml"; }

    // The local definitions of T; null when they cannot be read, and then `problem` says why.
    DefinitionsOfATag ReadLocal() {
        problem.clear();
        return {manager.ReadDefinitions(u"T", problem), {u"T"}};
    }
    // The definitions of T that the text holds; null when it holds none.
    DefinitionsOfATag Of(const CString& xml) {
        return {manager.GetRepositoryfactory(u"T")->CreateRepository(xml.c_str()), {u"T"}};
    }
    // A definition of T, of its own.
    std::unique_ptr<ZEBGis::CRepositoryItem> Item(const CString& xml) {
        const auto repository = Of(u"<definitions>" + xml + u"</definitions>");
        return std::unique_ptr<ZEBGis::CRepositoryItem>(
            manager.GetRIF(u"T")->CreateItem(*repository->GetRepositoryItemList().GetHead()));
    }

    Workstation m_station;
    ZEBGis::CRepositoryManager& manager = *ZEBGis::CRepositoryManager::Instance();
    CString problem;
};
