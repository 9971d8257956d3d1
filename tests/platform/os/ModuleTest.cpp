// SPDX-License-Identifier: MIT
#include "platform/os/Module.h"

#include "platform/os/Path.h"
#include "support/InAChildProcess.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include <gtest/gtest.h>

using Platform::FindExport;
using Platform::LoadModule;
using Platform::ModuleHandle;
namespace fs = std::filesystem;

namespace {

CString Sample(CStringView name) {
    return Platform::PathFromNative(ZEBX_SAMPLE_MODULES "/") + CString(name);
}

int Answer(ModuleHandle module) {
    return reinterpret_cast<int (*)()>(FindExport(module, "SampleAnswer"))();
}

} // namespace

TEST(Modules, ALoadedModuleAnswersThroughItsExports) {
    CString reason = u"untouched";
    const ModuleHandle module = LoadModule(Sample(u"PlatformSample.arx"), &reason);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(reason, u"untouched");
    EXPECT_GE(Answer(module), 42);
}

TEST(Modules, AModuleIsLoadedOnceAndLookedUpWithoutRegardToCase) {
    const ModuleHandle module = LoadModule(Sample(u"PlatformSample.arx"));
    ASSERT_NE(module, nullptr);
    const int first = Answer(module);
    const ModuleHandle again = LoadModule(Sample(u"PLATFORMSAMPLE.ARX"));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(Answer(again), first + 1);
}

TEST(Modules, WhatIsNotExportedIsNotFound) {
    const ModuleHandle module = LoadModule(Sample(u"PlatformSample.arx"));
    EXPECT_EQ(FindExport(module, "GetPluginInfo"), nullptr);
    EXPECT_EQ(FindExport(module, "SampleSecret"), nullptr);
    EXPECT_EQ(FindExport(module, nullptr), nullptr);
    EXPECT_EQ(FindExport(nullptr, "malloc"), nullptr);
}

TEST(Modules, WhatCannotBeLoadedIsNullWithTheReason) {
    const TemporaryFolder folder;
    std::ofstream(folder.Native() / "text.arx") << "no module";
    std::ofstream(folder.Native() / "empty.arx") << "";
    ASSERT_EQ(mkfifo((folder.Native() / "pipe.arx").c_str(), 0600), 0);
    for (const CString& path :
         {folder.Path() + u"none.arx", folder.Path() + u"text.arx", folder.Path() + u"empty.arx",
          folder.Path() + u"pipe.arx", folder.Path(), CString(), CString(1, u'\0'),
          Sample(u"PlatformSample.arx") + CString(1, u'\0'),
          Sample(u"PlatformSampleIncomplete.arx")}) {
        CString reason;
        EXPECT_EQ(LoadModule(path, &reason), nullptr);
        EXPECT_NE(reason, u"");
        EXPECT_EQ(LoadModule(path), nullptr);
    }
}

TEST(Modules, ANameWithoutAFolderIsOneOfTheCurrentFolder) {
    const TemporaryFolder folder;
    fs::copy_file(ZEBX_SAMPLE_MODULES "/PlatformSample.arx", folder.Native() / "Own.arx");
    EXPECT_TRUE(PassesInAChildProcess([&] {
        fs::current_path(folder.Native());
        EXPECT_NE(LoadModule(u"own.arx"), nullptr);
        // The loader's own folders are not searched.
        EXPECT_EQ(LoadModule(u"libm.so.6"), nullptr);
    }));
}
