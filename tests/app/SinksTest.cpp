// SPDX-License-Identifier: MIT
#include "app/Sinks.h"
#include "InProcess.h"

using namespace App;
using namespace ZEBGis::Workspace;

namespace {

class Sinks : public AppTest::InProcess {
protected:
    static std::string Shown(std::int32_t type, bool colour) {
        std::ostringstream stream;
        const SinkGuard guard(boost::shared_ptr<IWsSink>(new TerminalSink(stream, colour)));
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

TEST_F(Sinks, TheWordIsInTheUsersLanguage) {
    workstation.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(Shown(MessageFailure, false), "Greška: Šaht.dwg\n");
}

TEST_F(Sinks, AfterTheGuardNothingIsShown) {
    std::ostringstream stream;
    { const SinkGuard guard(boost::shared_ptr<IWsSink>(new TerminalSink(stream, false))); }
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
