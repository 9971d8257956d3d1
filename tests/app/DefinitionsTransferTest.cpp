// SPDX-License-Identifier: MIT
// Definitions moved between two workstations over one repository.
#include "Documents.h"
#include "Lines.h"
#include "Plant.h"
#include "app/Definitions.h"
#include "support/InAChildProcess.h"

#include "platform/host/Interruption.h"
#include "platform/os/UserSettings.h"
#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>
#include <fstream>
#include <gmock/gmock.h>

using namespace AppTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* kTag = "PIPE_DEFINITIONS";

// Writes each message as a line: its type, its text.
class FileSink : public ZEBGis::Workspace::IWsSink {
public:
    explicit FileSink(const fs::path& path) : m_file(path) {}
    void Write(const ZEBGis::Workspace::CWsMessage& message) override {
        m_file << message.type << ' ' << Platform::ToUtf8(message.text) << '\n';
    }
    void Write(const std::string& line) { m_file << line << '\n'; }

private:
    std::ofstream m_file;
};

std::string NameOf(App::Outcome outcome) {
    if (outcome == App::Outcome::Done)
        return "Done";
    return outcome == App::Outcome::Failed ? "Failed" : "FailedHere";
}

// A factory at whose given call, to make a repository or for its name, the user interrupts.
class InterruptedFactory : public ZEBGis::CRepositoryFactory {
public:
    InterruptedFactory(ZEBGis::CRepositoryFactory& factory, int calls)
        : m_factory(factory), m_callsLeft(calls) {}
    virtual ~InterruptedFactory() = default;
    CString GetTag() const override { return m_factory.GetTag(); }
    ZEBGis::CDefinitionRepository* CreateRepository(const char16_t* xml) override {
        Count();
        return m_factory.CreateRepository(xml);
    }
    void ReleaseRepository(ZEBGis::CDefinitionRepository* repository) override {
        m_factory.ReleaseRepository(repository);
    }
    std::vector<ZEBGis::enmEntityType> GetEntityTypes() const override { return {}; }
    CString GetFilePath() const override { return m_factory.GetFilePath(); }
    CString GetRepositoryName() const override {
        Count();
        return m_factory.GetRepositoryName();
    }

private:
    void Count() const {
        if (--m_callsLeft == 0)
            Platform::RequestInterruption();
    }

    ZEBGis::CRepositoryFactory& m_factory;
    mutable int m_callsLeft;
};

class DefinitionsTransfer : public testing::Test {
protected:
    DefinitionsTransfer() {
        const std::string address = "sqlite:" + ana.Repository().string();
        EXPECT_EQ(ana.Zebx({"init"}).status, 0);
        EXPECT_EQ(ana.Zebx({"connect", "--create", address}).status, 0);
        EXPECT_EQ(ivan.Zebx({"init"}).status, 0);
        EXPECT_EQ(ivan.Zebx({"connect", address}).status, 0);
    }

    static fs::path File(const Station& station, const std::string& tag = kTag) {
        return station.Support() / "Definitions" / (tag + ".xml");
    }
    static void Keep(const Station& station, const std::string& definitions,
                     const std::string& tag = kTag) {
        Write(File(station, tag),
              "<definitions tag=\"" + tag + "\">\n" + definitions + "</definitions>\n");
    }

    using Move = App::Outcome (*)(const App::OpenStorage&, const std::optional<CString>&);
    // Moves as the program does and gives the outcome, then the messages: "TYPE TEXT" each.
    std::vector<std::string> Do(const Station& station, Move move,
                                const std::optional<CString>& tag, int interruptAt = 0) {
        const fs::path log = station.Folder() / "moved";
        EXPECT_TRUE(PassesInAChildProcess([&] {
            for (const auto& [name, value] : station.Variables())
                setenv(name.c_str(), value.c_str(), 1);
            Platform::UserSettings::Instance()->Reset();
            const App::OpenStorage storage = App::RequireStorage();
            auto& factories = const_cast<std::map<CString, ZEBGis::CRepositoryFactory*>&>(
                ZEBGis::CRepositoryManager::Instance()->GetRepositoryFactories());
            auto*& factory = factories[Platform::FromUtf8(kTag)];
            InterruptedFactory interrupted(*factory, interruptAt);
            if (interruptAt > 0)
                factory = &interrupted;
            const auto sink = boost::make_shared<FileSink>(log);
            const App::SinkGuard logging(sink);
            sink->Write(NameOf(move(storage, tag)));
        }));
        std::vector<std::string> lines = Lines(Bytes(log));
        std::rotate(lines.begin(), lines.end() - 1, lines.end());
        return lines;
    }
    std::vector<std::string> Push(const Station& station,
                                  const std::optional<CString>& tag = std::nullopt) {
        return Do(station, App::PushDefinitions, tag);
    }
    std::vector<std::string> Pull(const Station& station,
                                  const std::optional<CString>& tag = std::nullopt) {
        return Do(station, App::PullDefinitions, tag);
    }

    Station ana;
    Station ivan;
};

TEST_F(DefinitionsTransfer, WhatOneWorkstationSendsAnotherGets) {
    const std::string pipes = "  <definition id=\"b\" name=\"B\"><x:y xmlns:x='u'/></definition>\n"
                              "  <definition id=\"a\" name=\"A\"/>\n";
    Keep(ana, pipes);
    Keep(ana, "  <definition id=\"v\" name=\"V\"/>\n", "VALVE_DEFINITIONS");
    EXPECT_THAT(Push(ana), ElementsAre("Done",
                                       "1 Pipe definitions: definitions sent to the "
                                       "repository: 2",
                                       "1 Valve definitions: definitions sent to the "
                                       "repository: 1"));
    EXPECT_THAT(Pull(ivan), ElementsAre("Done",
                                        "1 Pipe definitions: definitions loaded from the "
                                        "repository: 2",
                                        "1 Valve definitions: definitions loaded from the "
                                        "repository: 1"));
    // In the order of their ids, as the manager lists them.
    EXPECT_EQ(Bytes(File(ivan)),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<definitions tag=\"PIPE_DEFINITIONS\">\n"
              "  <definition id=\"a\" name=\"A\"/>\n"
              "  <definition id=\"b\" name=\"B\"><x:y xmlns:x='u'/></definition>\n"
              "</definitions>\n");
    EXPECT_TRUE(fs::exists(File(ivan, "VALVE_DEFINITIONS")));
    EXPECT_FALSE(fs::exists(File(ivan, "MANHOLE_DEFINITIONS")));
}

TEST_F(DefinitionsTransfer, OneTagMovesAlone) {
    Keep(ana, "<definition id='a'/>");
    Keep(ana, "<definition id='v'/>", "VALVE_DEFINITIONS");
    EXPECT_THAT(Push(ana, u"VALVE_DEFINITIONS"), ElementsAre("Done", StartsWith("1 Valve")));
    EXPECT_THAT(Pull(ivan), ElementsAre("Done", StartsWith("1 Valve")));
    EXPECT_FALSE(fs::exists(File(ivan)));
}

TEST_F(DefinitionsTransfer, KnownIdsAreReplacedInTheirPlacesAndTheRestStays) {
    Keep(ana, "<definition id='1' name='new'/><definition id='3' name='three'/>");
    Push(ana);
    const std::string before =
        "<!-- mine --><definition id='2' name='two'/>\n"
        "<definition id='1' name='old'/>\n<definition id='0' name='zero'/>\n";
    Keep(ivan, before);
    const std::string old = Bytes(File(ivan));
    EXPECT_EQ(Pull(ivan).front(), "Done");
    EXPECT_EQ(Bytes(File(ivan)),
              "<definitions tag=\"PIPE_DEFINITIONS\">\n<!-- mine --><definition id='2' "
              "name='two'/>\n<definition id='1' name='new'/>\n<definition id='0' name='zero'/>\n"
              "  <definition id='3' name='three'/>\n</definitions>\n");
    EXPECT_EQ(Bytes(ivan.Support() / "Definitions/PIPE_DEFINITIONS.previous.xml"), old);
    EXPECT_EQ(Pull(ivan).front(), "Done");
    EXPECT_EQ(Bytes(ivan.Support() / "Definitions/PIPE_DEFINITIONS.previous.xml"), old);
}

TEST_F(DefinitionsTransfer, RenamedAndDeletedOnesArriveAsSuchAndNothingIsDeletedHere) {
    Keep(ana, "<definition id='a' name='A'/><definition id='b' name='B'/>");
    Push(ana);
    Pull(ivan);
    EXPECT_EQ(ana.Zebx({"items", kTag, "rename", "a", "new <&\">"}).status, 0);
    EXPECT_EQ(ana.Zebx({"items", kTag, "delete", "b"}).status, 0);
    EXPECT_EQ(Pull(ivan).front(), "Done");
    EXPECT_THAT(Bytes(File(ivan)),
                HasSubstr("<definition id='a' name=\"new &lt;&amp;&quot;&gt;\"/>\n"
                          "  <definition id='b' name='B'/>"));
}

TEST_F(DefinitionsTransfer, HostileNamesAndContentsComeBackAsTheyWere) {
    const std::string longName = [] {
        std::string text;
        for (int i = 0; i < 10000; ++i)
            text += "ž";
        return text;
    }();
    const std::string definitions =
        "  <definition id=\"1\" name=\"&quot;'&lt;&amp;&gt;]]>$|#@\"/>\n"
        "  <definition id=\"2\" name=\"a&#13;&#10;b&#9;c\">\n line\r\n&#13;</definition>\n"
        "  <definition id=\"3\" name=\"жλ😀\u00A0\"><![CDATA[</definition>]]></definition>\n"
        "  <definition id=\"4\" name=\"" +
        longName + "\"/>\n";
    Keep(ana, definitions);
    EXPECT_EQ(Push(ana).front(), "Done");
    EXPECT_EQ(Pull(ivan).front(), "Done");
    EXPECT_EQ(Bytes(File(ivan)), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + Bytes(File(ana)));
}

TEST_F(DefinitionsTransfer, TheSameAgainMakesNoRevision) {
    Keep(ana, "<definition id='a'/>");
    Push(ana);
    EXPECT_EQ(Push(ana).front(), "Done");
    EXPECT_THAT(Lines(ana.Zebx({"log"}).out), testing::SizeIs(2));
}

TEST_F(DefinitionsTransfer, NoDefinitionsAreAWarningWhenTheyWereAskedForAndElseNoNews) {
    EXPECT_THAT(Push(ana), ElementsAre("Done"));
    EXPECT_THAT(Pull(ana), ElementsAre("Done"));
    EXPECT_THAT(Push(ana, u"PIPE_DEFINITIONS"),
                ElementsAre("Done", "2 Pipe definitions: this workstation has none to send."));
    EXPECT_THAT(Pull(ana, u"PIPE_DEFINITIONS"),
                ElementsAre("Done", "2 Pipe definitions: the repository has none."));
    EXPECT_FALSE(fs::exists(File(ana).parent_path()));
}

TEST_F(DefinitionsTransfer, ADamagedFileIsToldAndTheOtherTagsAreSent) {
    Write(File(ana), "<definitions>\n<definition id='a'/>\n<definition/></definitions>");
    Keep(ana, "<definition id='v'/>", "VALVE_DEFINITIONS");
    EXPECT_THAT(Push(ana),
                ElementsAre("FailedHere",
                            "4 " + File(ana).string() + ", line 3: a definition needs an id",
                            "4 Pipe definitions: could not be sent to the repository, or not all "
                            "of them.",
                            StartsWith("1 Valve definitions: ")));
}

TEST_F(DefinitionsTransfer, ADamagedFileIsNotWrittenOverAndTheOtherTagsAreFetched) {
    Keep(ana, "<definition id='a'/>");
    Keep(ana, "<definition id='v'/>", "VALVE_DEFINITIONS");
    Push(ana);
    Write(File(ivan), "<definitions><definition id='a'>");
    EXPECT_THAT(Pull(ivan), ElementsAre("FailedHere", HasSubstr("cut short"),
                                        StartsWith("4 Pipe definitions: could not be loaded"),
                                        StartsWith("1 Valve definitions: ")));
    EXPECT_EQ(Bytes(File(ivan)), "<definitions><definition id='a'>");
    EXPECT_TRUE(fs::exists(File(ivan, "VALVE_DEFINITIONS")));
}

TEST_F(DefinitionsTransfer, AStoredConfigurationThatIsNoDefinitionIsNamedAndTheOthersArrive) {
    Keep(ana, "<definition id='a' name='A'/><definition id='b' name='B'/>");
    Push(ana);
    Plant(ana, "UPDATE repository_item SET configuration_xml = '<other/>' WHERE item_id = 'a'");
    EXPECT_THAT(Pull(ivan), ElementsAre("Failed",
                                        StartsWith("4 Pipe definitions: the definition "
                                                   "a (A) could not be fetched"),
                                        StartsWith("4 Pipe definitions: could not be loaded")));
    EXPECT_THAT(Bytes(File(ivan)), HasSubstr("<definition id='b' name='B'/>"));
}

TEST_F(DefinitionsTransfer, ARefusedDefinitionIsNamedAndTheOthersAreSent) {
    Plant(ana, "CREATE UNIQUE INDEX no_two_names ON repository_item (name)");
    Keep(ana, "<definition id='a' name='x'/><definition id='b' name='x'/>"
              "<definition id='c' name='y'/>");
    const auto pushed = Push(ana);
    EXPECT_EQ(pushed.front(), "Failed");
    EXPECT_THAT(pushed, testing::Contains("4 Pipe definitions: the definition b (x) could not be "
                                          "sent."));
    EXPECT_THAT(pushed.back(), StartsWith("4 Pipe definitions: could not be sent"));
    const auto listed = ana.Zebx({"items", kTag, "list"}).out;
    EXPECT_THAT(listed, HasSubstr("Definitions: 2."));
}

TEST_F(DefinitionsTransfer, APullThatIsStoppedInTheMiddleWritesNothing) {
    Keep(ana, "<definition id='a'/><definition id='b'/><definition id='c'/>");
    Push(ana);
    // At first for its name, then two repositories are made for each definition.
    const auto pulled = Do(ivan, App::PullDefinitions, std::nullopt, 4);
    EXPECT_THAT(pulled, ElementsAre("Failed", StartsWith("4 Pipe definitions: could not be "
                                                         "loaded")));
    EXPECT_FALSE(fs::exists(File(ivan)));
}

TEST_F(DefinitionsTransfer, APushThatIsStoppedInTheMiddleSendsNoMoreAndLeavesTheOtherTags) {
    Keep(ana, "<definition id='a'/><definition id='b'/><definition id='c'/>");
    Keep(ana, "<definition id='v'/>", "VALVE_DEFINITIONS");
    // At first for its name, then for that of each definition's repository.
    const auto pushed = Do(ana, App::PushDefinitions, std::nullopt, 3);
    EXPECT_THAT(pushed, ElementsAre("Failed", StartsWith("4 Pipe definitions: could not be sent")));
    Pull(ivan);
    EXPECT_THAT(Bytes(File(ivan)), AllOf(HasSubstr("id='b'"), Not(HasSubstr("id='c'"))));
    EXPECT_FALSE(fs::exists(File(ivan, "VALVE_DEFINITIONS")));
}

TEST_F(DefinitionsTransfer, ATagThatIsNotDeclaredHereStaysInTheRepository) {
    Write(ana.Support() / "Definitions.xml", "<definitions><repository tag='X'/></definitions>");
    Keep(ana, "<definition id='a'/>", "X");
    EXPECT_EQ(Push(ana).front(), "Done");
    EXPECT_THAT(Pull(ivan), ElementsAre("Done"));
    EXPECT_FALSE(fs::exists(File(ivan, "X")));
}

TEST_F(DefinitionsTransfer, WhatIsWrongWithTheDeclarationsIsAWarning) {
    Write(ana.Support() / "Definitions.xml", "<definitions>\n<repository/></definitions>");
    EXPECT_THAT(Push(ana), ElementsAre("Done", "2 " + (ana.Support() / "Definitions.xml").string() +
                                                   ", line 2: a repository needs a tag"));
}

TEST_F(DefinitionsTransfer, TheProgramMovesThemWithEverythingElse) {
    Keep(ana, "  <definition id=\"a\" name=\"A\"/>\n  <definition id=\"b\"/>\n");
    const auto sent = DocumentOf(ana.Zebx({"push", "--json"}));
    EXPECT_EQ(sent["result"]["selections"].back()["selection"], "items");
    EXPECT_EQ(sent["result"]["selections"].back()["stored"], 2);
    const auto fetched = DocumentOf(ivan.Zebx({"pull", "--json"}));
    EXPECT_EQ(fetched["result"]["selections"].back()["selection"], "items");
    EXPECT_EQ(fetched["result"]["selections"].back()["items"], 2);
    EXPECT_EQ(Bytes(File(ivan)), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + Bytes(File(ana)));
}

TEST_F(DefinitionsTransfer, TheProgramsStatusTellsOfAFileThatIsNone) {
    Keep(ana, "<definition id='a'/>");
    Write(File(ana, "VALVE_DEFINITIONS"), "<definitions>");
    const Ended push = ana.Zebx({"push", "items"});
    EXPECT_EQ(push.status, 9) << push;
    EXPECT_THAT(push.err, HasSubstr(File(ana, "VALVE_DEFINITIONS").string() + ", line 1: "));
    EXPECT_EQ(ana.Zebx({"push", "items:PIPE_DEFINITIONS"}).status, 0);
    Write(File(ivan), "<definitions>");
    EXPECT_EQ(ivan.Zebx({"pull", "items"}).status, 9);
    EXPECT_EQ(Bytes(File(ivan)), "<definitions>");
}

TEST_F(DefinitionsTransfer, TheProgramRefusesATagThatIsNotDeclared) {
    for (const char* verb : {"push", "pull"}) {
        const Ended run = ana.Zebx({verb, "items:PIPE"});
        EXPECT_EQ(run.status, 2) << run;
        EXPECT_THAT(run.err, HasSubstr("items:PIPE_DEFINITIONS"));
    }
}

} // namespace
