// SPDX-License-Identifier: MIT
// Text files that the program lives by, damaged, each named by its defect: the program says
// which file, and never writes over what it did not understand.
#include "Station.h"

#include <gmock/gmock.h>
#include <optional>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

struct Damage {
    const char* defect;
    std::optional<std::string> bytes; // nothing: a folder in the file's place
};

const Damage kDamages[] = {{"utf16", std::string("\xFF\xFE\x32\0\x31\0", 6)},
                           {"nuls", std::string(4000, '\0')},
                           {"long_line", std::string(1'000'000, 'x')},
                           {"noise", "\x7F\x45\xFF\x01\x80\n\xC3"},
                           {"empty", ""},
                           {"folder", std::nullopt}};

class DamagedFiles : public testing::TestWithParam<Damage> {
protected:
    void Put(const fs::path& path) const {
        fs::remove_all(path);
        if (GetParam().bytes)
            Write(path, *GetParam().bytes);
        else
            fs::create_directories(path);
    }
    void ExpectUntouched(const fs::path& path) const {
        if (GetParam().bytes) {
            EXPECT_EQ(Bytes(path), *GetParam().bytes);
        } else {
            EXPECT_TRUE(fs::is_directory(path));
        }
    }

    Station station;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(By, DamagedFiles, testing::ValuesIn(kDamages),
                         [](const auto& damage) { return damage.param.defect; });

TEST_P(DamagedFiles, AMessageTableIsNamedInPlainWords) {
    const fs::path folder = InstallationWithoutPlugin(station);
    Put(folder / "messages/en");
    const Ended run = station.Zebx({"status", "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr((folder / "messages/en").string()),
                               HasSubstr("zebx --install DIR")));
    EXPECT_LT(run.err.size(), 1000u);
    ExpectUntouched(folder / "messages/en");
}

TEST_P(DamagedFiles, SettingsAreLeftAsTheyAreAndTheDefaultsHold) {
    EXPECT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    Put(station.Ini());
    const Ended run = station.Zebx({"status"});
    EXPECT_EQ(run.status, 0) << run;
    if (GetParam().bytes != "") {
        EXPECT_THAT(run.err, HasSubstr("Warning: " + station.Ini().string()));
    }
    EXPECT_LT(run.err.size(), 4000u);
    EXPECT_EQ(station.Zebx({"init"}).status, 6);
    ExpectUntouched(station.Ini());
}

TEST_P(DamagedFiles, StorageSettingsAreLeftAsTheyAreUntilConnect) {
    EXPECT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    const fs::path settings = station.Folder() / "config/StudioZEB/RepositoryStorageSettings/"
                                                 "ZEBXRepositoryClientPlugin_Sql.ini";
    Put(settings);
    for (const char* verb : {"status", "push", "pull", "ls"}) {
        const Ended run = station.Zebx({verb});
        EXPECT_EQ(run.status, 3) << run;
        EXPECT_THAT(run.err, HasSubstr(settings.string()));
        EXPECT_LT(run.err.size(), 1000u);
    }
    ExpectUntouched(settings);
}
