// SPDX-License-Identifier: MIT
#include "app/Sinks.h"
#include "InProcess.h"

using namespace App;
using namespace ZEBGis::Workspace;

namespace {

CWsMessage MessageOf(std::int32_t type, const CString& text) {
    CWsMessage message;
    message.type = type;
    message.text = text;
    return message;
}

class Sinks : public AppTest::InProcess {
protected:
    static std::string Shown(std::int32_t type, bool colour) {
        std::ostringstream stream;
        const SinkGuard guard(
            boost::shared_ptr<IWsSink>(new TerminalSink(stream, {.colour = colour})));
        CWsManager::Instance()->LogMessage(type, u"Šaht.dwg");
        return stream.str();
    }
};

TEST_F(Sinks, ASuccessIsShownAsItIs) {
    EXPECT_EQ(Shown(MessageSuccess, false), "Šaht.dwg\n");
    EXPECT_EQ(Shown(MessageSuccess, true), "Šaht.dwg\n");
}

TEST_F(Sinks, WarningsAndFailuresAreMarkedByAWord) {
    EXPECT_EQ(Shown(MessageWarning, false), "Warning: Šaht.dwg\n");
    EXPECT_EQ(Shown(MessageFailure, false), "Failure: Šaht.dwg\n");
}

TEST_F(Sinks, AColourIsOnlyAddedToTheWord) {
    EXPECT_EQ(Shown(MessageWarning, true), "\x1b[33mWarning:\x1b[0m Šaht.dwg\n");
    EXPECT_EQ(Shown(MessageFailure, true), "\x1b[31mFailure:\x1b[0m Šaht.dwg\n");
}

TEST_F(Sinks, QuietLeavesOutSuccessesAlone) {
    std::ostringstream stream;
    TerminalSink terminal(stream, {.quiet = true});
    for (const std::int32_t type : {MessageSuccess, MessageWarning, MessageFailure})
        terminal.Write(MessageOf(type, u"x"));
    EXPECT_EQ(stream.str(), "Warning: x\nFailure: x\n");
}

TEST_F(Sinks, NotesAreForVerboseOnly) {
    std::ostringstream stream;
    TerminalSink(stream, {}).Note(u"one");
    TerminalSink(stream, {.verbose = true}).Note(u"two");
    EXPECT_EQ(stream.str(), "two\n");
}

TEST_F(Sinks, TheLineOfProgressMakesWayForAMessageAndComesBack) {
    std::ostringstream stream;
    TerminalSink terminal(stream, {.progressWidth = 5});
    terminal.ShowProgress(u"1 of many");
    EXPECT_EQ(stream.str(), "1 of ");
    terminal.Write(MessageOf(MessageSuccess, u"a.dwg"));
    EXPECT_EQ(stream.str(), "1 of \r     \ra.dwg\n1 of ");
    stream.str("");
    terminal.ShowProgress({});
    terminal.Write(MessageOf(MessageSuccess, u"b.dwg"));
    EXPECT_EQ(stream.str(), "\r     \rb.dwg\n");
}

TEST_F(Sinks, WithoutAWidthThereIsNoProgress) {
    std::ostringstream stream;
    TerminalSink terminal(stream, {});
    terminal.ShowProgress(u"1");
    EXPECT_EQ(stream.str(), "");
}

TEST_F(Sinks, TheWordIsInTheUsersLanguage) {
    workstation.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(Shown(MessageFailure, false), "Greška: Šaht.dwg\n");
}

TEST_F(Sinks, AfterTheGuardNothingIsShown) {
    std::ostringstream stream;
    { const SinkGuard guard(boost::shared_ptr<IWsSink>(new TerminalSink(stream, {}))); }
    CWsManager::Instance()->LogMessage(MessageSuccess, u"late");
    EXPECT_EQ(stream.str(), "");
}

TEST_F(Sinks, SuccessesAndFailuresAreCountedAndWarningsAreNeither) {
    const boost::shared_ptr<CountingSink> counter(new CountingSink);
    const SinkGuard guard(counter);
    for (const std::int32_t type : {MessageSuccess, MessageSuccess, MessageWarning, MessageFailure})
        CWsManager::Instance()->LogMessage(type, u"x");
    EXPECT_EQ(counter->Successes(), 2);
    EXPECT_EQ(counter->Failures(), 1);
}

} // namespace
