// SPDX-License-Identifier: MIT
// What zebx dialog and the console's REPOSITORY say where the dialog cannot be shown.
#include "Documents.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class DialogVerb : public testing::Test {
protected:
    DialogVerb() : installation(InstallationWithoutPlugin(station)) {
        station.Set("ZEBX_INSTALL", installation.string());
        Link("ZEBXRepositoryClient.arx");
    }

    void Link(const std::string& module) const {
        fs::create_symlink(fs::path(ZEBX_BUILD_DIR) / "lib/zebx" / module, installation / module);
    }

    // The verb refuses with a text of these parts, and the console says the same and goes on.
    void ExpectRefusal(const testing::Matcher<const std::string&>& text) const {
        const Ended verb = station.Zebx({"dialog"});
        EXPECT_EQ(verb.status, 3) << verb;
        EXPECT_THAT(verb.err, text);
        EXPECT_THAT(verb.out, IsEmpty());
        const Ended json = station.Zebx({"dialog", "--json"});
        EXPECT_EQ(DocumentOf(json)["error"]["status"], 3) << json;
        EXPECT_TRUE(DocumentOf(json)["result"].is_null());
        const Ended console = station.ZebxReading("repository\nhelp\n", {"console"});
        EXPECT_EQ(console.status, 8) << console;
        EXPECT_THAT(console.err, text);
        EXPECT_THAT(console.out, HasSubstr("\nREPOSITORY "));
    }

    Station station;
    const fs::path installation;
};

TEST_F(DialogVerb, WithoutAStoragePluginSaysWhatWasLookedForWhere) {
    ExpectRefusal(AllOf(HasSubstr("no storage plug-in"), HasSubstr(installation.string())));
}

TEST_F(DialogVerb, WithoutTheDialogsModuleNamesItsFileAndThePackageThatHasIt) {
    Link("ZEBXRepositoryClientPlugin_Sql.arx");
    ExpectRefusal(AllOf(HasSubstr((installation / "ZEBXRepositoryClientDialog.arx").string()),
                        HasSubstr("zebx-dialog")));
}

TEST_F(DialogVerb, AModuleThatCannotBeLoadedIsNamedWithTheSystemsReason) {
    Link("ZEBXRepositoryClientPlugin_Sql.arx");
    Write(installation / "ZEBXRepositoryClientDialog.arx", "this is no module");
    ExpectRefusal(AllOf(HasSubstr("ZEBXRepositoryClientDialog.arx"), HasSubstr("too short"),
                        HasSubstr("zebx-dialog")));
}

} // namespace
