// SPDX-License-Identifier: MIT
#include "Documents.h"
#include "InProcess.h"

#include <gmock/gmock.h>

using namespace AppTest;
using nlohmann::json;
using testing::HasSubstr;

namespace {

class ConfigShow : public InProcess {
protected:
    json SettingNamed(const std::string& name, std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.end(), {"config", "show", "--json"});
        const json document = DocumentOf(RunHere(arguments));
        for (const json& setting : document["result"]["settings"]) {
            if (setting["name"] == name)
                return setting;
        }
        return {};
    }
    static json From(const char* origin, const json& place = {}, const json& line = {}) {
        return {origin, place, line};
    }
    json OriginOf(const std::string& name, const std::vector<std::string>& arguments = {}) {
        const json setting = SettingNamed(name, arguments);
        return {setting["origin"], setting["place"], setting["line"]};
    }
};

TEST_F(ConfigShow, ListsEverySettingWithItsValue) {
    const Ended run = RunHere({"config", "show"});
    EXPECT_EQ(run.status, 0) << run;
    for (const char* name : {"config", "install", "support", "language", "enabled", "schema",
                             "trace", "trace_file", "workspace_log"})
        EXPECT_THAT("\n" + run.out, HasSubstr("\n" + std::string(name) + " "));
    EXPECT_THAT(run.out, HasSubstr("language       en\n"));
    EXPECT_THAT(run.out, Not(HasSubstr("<-")));
}

TEST_F(ConfigShow, OriginIsTheOptionTheVariableTheLineOrTheDefault) {
    const TemporaryFolder folder;
    const std::string ini = (folder.Native() / "my.ini").string();
    Write(ini, "[logging]\n\ntrace = on\n");
    workstation.Set("ZEBX_CONFIG", ini.c_str());
    EXPECT_EQ(OriginOf("config"), From("environment", "ZEBX_CONFIG"));
    EXPECT_EQ(OriginOf("trace"), From("file", ini, 3));
    EXPECT_EQ(OriginOf("trace_file"), From("default"));
    EXPECT_EQ(SettingNamed("schema")["value"], "zebx");
    EXPECT_EQ(OriginOf("schema"), From("default"));
    workstation.Set("ZEBX_SCHEMA", "water");
    EXPECT_EQ(SettingNamed("schema")["value"], "water");
    EXPECT_EQ(OriginOf("schema"), From("environment", "ZEBX_SCHEMA"));
    EXPECT_EQ(OriginOf("support", {"--support", "/x"}), From("option", "--support"));
    EXPECT_EQ(OriginOf("language", {"--language", "hr"}), From("option", "--language"));
    EXPECT_EQ(SettingNamed("support", {"--support", "/x"})["value"], "/x/");

    const Ended run = RunHere({"config", "show", "--origin", "--support", "/x"});
    EXPECT_THAT(run.out, HasSubstr("support        /x/\n               <- --support\n"));
    EXPECT_THAT(run.out, HasSubstr("trace          on\n               <- " + ini + ":3\n"));
    EXPECT_THAT(run.out, HasSubstr("<- ZEBX_CONFIG\n"));
    EXPECT_THAT(run.out, HasSubstr("<- default\n"));
}

TEST_F(ConfigShow, IsAVerbOfAGroupThatHelpsToo) {
    const Ended group = RunHere({"config"});
    EXPECT_EQ(group.status, 2);
    EXPECT_THAT(group.err, HasSubstr("The verb config needs a word: show."));
    EXPECT_THAT(RunHere({"config", "--help"}).out, HasSubstr("\n  config show  "));
    EXPECT_THAT(RunHere({"config", "show", "--help"}).out, HasSubstr("\n  --origin "));
    EXPECT_EQ(RunHere({"config", "show", "x"}).status, 2);
    EXPECT_EQ(RunHere({"--support", "/x", "config", "show"}).status, 0);
}

TEST_F(ConfigShow, TheLanguageOptionWinsOverTheVariable) {
    EXPECT_THAT(RunHere({"--language", "hr", "--help"}).out, HasSubstr("Primjeri:"));
    EXPECT_THAT(RunHere({"--help"}).out, HasSubstr("Examples:"));
}

} // namespace
