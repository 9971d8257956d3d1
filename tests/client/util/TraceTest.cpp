// SPDX-License-Identifier: MIT
#include "client/util/Trace.h"
#include "support/Bytes.h"
#include "support/TemporaryFolder.h"

#include <climits>
#include <gmock/gmock.h>
#include <iostream>
#include <stdlib.h>

using namespace Repository;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string logFile;
int timesAsked = 0;

std::string LogFile() {
    ++timesAsked;
    return logFile;
}

// What std::cout receives while this lives.
class StandardOutput {
public:
    StandardOutput() : m_before(std::cout.rdbuf(m_text.rdbuf())) {}
    ~StandardOutput() { std::cout.rdbuf(m_before); }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    std::string Text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::streambuf* m_before;
};

// `text` with every digit made a zero.
std::string ShapeOf(std::string text) {
    for (char& character : text)
        if (character >= '0' && character <= '9')
            character = '0';
    return text;
}

// Traces into a stream; the log itself has a file of its own that nothing should touch.
class Trace : public testing::Test {
protected:
    Trace() {
        CLogEngine::SetLoggingOnOff(1);
        logFile = (m_folder.Native() / "trace.log").string();
        timesAsked = 0;
    }

    // The lines so far without the time, which is checked and cut off; then none.
    std::vector<std::string> TakeLines() {
        std::vector<std::string> lines;
        std::istringstream text(m_stream.str());
        for (std::string line; std::getline(text, line);) {
            EXPECT_EQ(ShapeOf(line.substr(0, 11)), "[00:00:00] ") << line;
            lines.push_back(line.substr(std::min<std::size_t>(11, line.size())));
        }
        m_stream.str({});
        return lines;
    }

    std::string FileText() const { return BytesOfFile(logFile); }

    TemporaryFolder m_folder;
    std::ostringstream m_stream;
    TraceLog m_log{&LogFile};
};

} // namespace

TEST_F(Trace, EnteringAndExitingAreALineEach) {
    { TraceScope scope(".\\DlgTabAdmin", 54, "CDlgTabAdmin::Send", 3, &m_stream, m_log); }
    EXPECT_THAT(
        TakeLines(),
        ElementsAre(
            "DlgTabAdmin                     (00054): [CDlgTabAdmin::Send], Entering function , "
            "CDlgTabAdmin::Send",
            "DlgTabAdmin                     (00054): [CDlgTabAdmin::Send], Exiting function , "
            "CDlgTabAdmin::Send"));
}

TEST_F(Trace, TheLineEndsWithOneLineFeed) {
    TraceScope scope("f", 1, "g", 3, &m_stream, m_log);
    const std::string text = m_stream.str();
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST_F(Trace, TheSourcesNameIsWhatFollowsItsLastBackslash) {
    TraceScope whole("util/Trace.cpp", 1, "f", 3, &m_stream, m_log);
    TraceScope last("C:\\a\\b\\Dlg", 1, "f", 3, &m_stream, m_log);
    TraceScope none("a\\", 1, "f", 3, &m_stream, m_log);
    EXPECT_THAT(TakeLines(),
                ElementsAre(testing::StartsWith("util/Trace.cpp                  (00001)"),
                            testing::StartsWith("Dlg                             (00001)"),
                            testing::StartsWith("                                (00001)")));
}

TEST_F(Trace, WidthsAreTheLeastAndLongerNamesArePrintedWhole) {
    const std::string source(40, 's');
    TraceScope scope(source.c_str(), 7, "f", 3, &m_stream, m_log);
    TraceScope other("x", 123456, "CDlgNetworkRepositoryConfiguration::OnInitDialog", 3, &m_stream,
                     m_log);
    EXPECT_THAT(TakeLines(),
                ElementsAre(source + "(00007): [f               ], Entering function , f",
                            "x                               (123456): "
                            "[CDlgNetworkRepositoryConfiguration::OnInitDialog], "
                            "Entering function , "
                            "CDlgNetworkRepositoryConfiguration::OnInitDialog"));
}

TEST_F(Trace, APrefixIsCutAt998CharactersAndNothingBreaks) {
    const std::string name(5000, 'n');
    TraceScope scope("x", 1, name.c_str(), 3, &m_stream, m_log);
    EXPECT_EQ(m_stream.str().size(), 998 + ("Entering function , " + name + "\n").size());
}

TEST_F(Trace, AFreeLineHoldsTheTextAndTheLineOfItsStatement) {
    TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
    TakeLines();
    scope.WriteLine("Admin mode ON", 54);
    const std::string next = std::to_string(__LINE__ + 1);
    scope.WriteLine("Marker");
    EXPECT_THAT(TakeLines(),
                ElementsAre("x                               (00054): [f               ], "
                            "Admin mode ON",
                            testing::EndsWith(next + "): [f               ], Marker")));
}

TEST_F(Trace, AValueIsWrittenInTheAnsiCodePage) {
    TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
    TakeLines();
    scope.WriteValue("strRefCat", u"Čvor Ω", 54);
    scope.WriteValue("strRefCat", nullptr, 54);
    EXPECT_THAT(TakeLines(),
                ElementsAre("x                               (00054): [f               ], "
                            "strRefCat = '\xC8vor ?'",
                            "x                               (00054): [f               ], "
                            "strRefCat = ''"));
}

TEST_F(Trace, AConditionThatHoldsIsReturnedAndWritesNothing) {
    TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
    TakeLines();
    EXPECT_TRUE(scope.Verify(true, "a!=0"));
    EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(Trace, AConditionThatFailsIsReturnedAndWritten) {
    TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
    TakeLines();
    EXPECT_FALSE(scope.Verify(false, "ptrItemFromNet.get()!=0", 9));
    EXPECT_THAT(TakeLines(),
                ElementsAre("x                               (00009): [f               ], "
                            "Failed verification:  'ptrItemFromNet.get()!=0'"));
}

TEST_F(Trace, WithLoggingOffOnlyAFailedConditionIsWritten) {
    CLogEngine::SetLoggingOnOff(0);
    {
        TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
        EXPECT_THAT(m_log.GetCallStack(), IsEmpty());
        scope.WriteLine("Marker");
        scope.WriteValue("v", u"w");
        EXPECT_THAT(TakeLines(), IsEmpty());
        EXPECT_FALSE(scope.Verify(false, "a"));
        EXPECT_EQ(TakeLines().size(), 1u);
    }
    EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(Trace, SwitchingLoggingTakesEffectAtOnce) {
    CLogEngine::SetLoggingOnOff(0);
    TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
    CLogEngine::SetLoggingOnOff(1);
    scope.WriteLine("seen");
    CLogEngine::SetLoggingOnOff(0);
    scope.WriteLine("not seen");
    EXPECT_THAT(TakeLines(), ElementsAre(testing::EndsWith("], seen")));
}

TEST_F(Trace, AHigherLevelWritesNoLineButStandsOnTheCallStack) {
    {
        TraceScope scope("x", 1, "f", 4, &m_stream, m_log);
        EXPECT_THAT(m_log.GetCallStack(), ElementsAre("f"));
        scope.WriteLine("Marker");
        EXPECT_FALSE(scope.Verify(false, "a"));
    }
    EXPECT_THAT(m_log.GetCallStack(), IsEmpty());
    EXPECT_THAT(TakeLines(), IsEmpty());
    TraceScope lower("x", 1, "f", 2, &m_stream, m_log);
    EXPECT_EQ(TakeLines().size(), 1u);
}

TEST_F(Trace, TheCallStackHoldsTheFunctionsThatWereEntered) {
    TraceScope outer("x", 1, "outer", 3, &m_stream, m_log);
    {
        TraceScope inner("x", 1, "inner", 3, &m_stream, m_log);
        EXPECT_THAT(m_log.GetCallStack(), ElementsAre("outer", "inner"));
    }
    EXPECT_THAT(m_log.GetCallStack(), ElementsAre("outer"));
}

TEST_F(Trace, LeavingWithAnEmptyCallStackRemovesNothingAndWritesItsLine) {
    CLogEngine::SetLoggingOnOff(0);
    {
        TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
        CLogEngine::SetLoggingOnOff(1);
    }
    EXPECT_THAT(m_log.GetCallStack(), IsEmpty());
    EXPECT_THAT(TakeLines(), ElementsAre(testing::EndsWith("Exiting function , f")));
}

TEST_F(Trace, ALeaveWhileLoggingIsOffKeepsTheNameOnTheCallStack) {
    {
        TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
        CLogEngine::SetLoggingOnOff(0);
    }
    EXPECT_THAT(m_log.GetCallStack(), ElementsAre("f"));
}

TEST_F(Trace, AScopeLeavesAlsoWhenAnExceptionEndsTheFunction) {
    try {
        TraceScope scope("x", 1, "f", 3, &m_stream, m_log);
        throw 1;
    } catch (int) {
    }
    EXPECT_THAT(TakeLines(), ElementsAre(testing::HasSubstr("Entering function , f"),
                                         testing::HasSubstr("Exiting function , f")));
}

TEST_F(Trace, WithoutAStreamOfItsOwnAScopeAppendsToTheLogFile) {
    MakeFile(logFile, "before\n");
    TraceScope scope("x", 1, "f", 3, nullptr, m_log);
    EXPECT_EQ(FileText().substr(0, 8), "before\n[");
    scope.WriteLine("Marker");
    // Every line is in the file as soon as it is written.
    EXPECT_THAT(FileText(), testing::EndsWith("], Marker\n"));
}

TEST_F(Trace, TheLogFilesPathIsAskedForOnce) {
    TraceScope scope("x", 1, "f", 3, nullptr, m_log);
    scope.WriteLine("one");
    const std::string first = logFile;
    logFile += ".other";
    scope.WriteLine("two");
    EXPECT_EQ(timesAsked, 1);
    EXPECT_THAT(BytesOfFile(first), testing::HasSubstr("], two\n"));
}

TEST_F(Trace, NothingIsOpenedBeforeTheFirstLine) {
    CLogEngine::SetLoggingOnOff(0);
    TraceScope scope("x", 1, "f", 3, nullptr, m_log);
    scope.WriteLine("Marker");
    EXPECT_EQ(timesAsked, 0);
    EXPECT_FALSE(std::filesystem::exists(logFile));
}

TEST_F(Trace, ALogFileThatCannotBeOpenedSendsEveryLineToStandardOutputForGood) {
    const std::filesystem::path folder = m_folder.Native() / "missing";
    logFile = (folder / "trace.log").string();
    StandardOutput output;
    TraceScope scope("x", 1, "f", 3, nullptr, m_log);
    EXPECT_THAT(output.Text(), testing::EndsWith("Entering function , f\n"));
    std::filesystem::create_directory(folder);
    scope.WriteLine("Marker");
    EXPECT_THAT(output.Text(), testing::EndsWith("], Marker\n"));
    EXPECT_FALSE(std::filesystem::exists(logFile));
}

TEST_F(Trace, TheProcessHasOneLog) {
    EXPECT_EQ(&TraceLog::Process(), &TraceLog::Process());
}

TEST(TraceTime, IsLocalTimeInThreePartsOfTwoDigits) {
    const char* before = getenv("TZ");
    const std::string zone = before ? before : "";
    setenv("TZ", "XXX-2", 1); // two hours ahead of UTC
    tzset();
    EXPECT_EQ(TraceTime(0), "02:00:00");
    EXPECT_EQ(TraceTime(86399 - 7200), "23:59:59");
    EXPECT_EQ(TraceTime(3600 + 60 + 1), "03:01:01");
    if (before)
        setenv("TZ", zone.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}

TEST(TraceTime, AFailedConversionPrintsMinusOneForEachPart) {
    EXPECT_EQ(TraceTime(LONG_MAX), "-1:-1:-1");
}

TEST(TraceText, ANullPointerIsNamed) {
    EXPECT_EQ(TraceText(nullptr), "Error: Bad pointer");
}

TEST(TraceText, AsciiStaysAsItIs) {
    EXPECT_EQ(TraceText(u"Marker"), "Marker");
    EXPECT_EQ(TraceText(u""), "");
}

TEST(TraceText, ALongerNarrowFormIsCutAtTheNumberOfCodeUnits) {
    EXPECT_EQ(TraceText(u"Život"), "Živo"); // six bytes, five of them kept
}

TEST(TraceText, NeverIsAPartOfACharacterLeft) {
    EXPECT_EQ(TraceText(u"ž"), "");
    EXPECT_EQ(TraceText(u"až"), "a");
    EXPECT_EQ(TraceText(u"žž"), "ž");
    EXPECT_EQ(TraceText(u"水水"), "");
    EXPECT_EQ(TraceText(u"\U0001F600"), "");
}
