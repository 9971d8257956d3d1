// SPDX-License-Identifier: MIT
// The test of fields over a scripted plug-in, and the texts that it shows.
#include "storage/window/FieldsTrial.h"

#include "support/Workstation.h"

#include <gmock/gmock.h>

#include <fstream>

namespace Storage {
namespace {

using testing::IsEmpty;

class ScriptedParameters : public IConnectionParameters {
public:
    virtual ~ScriptedParameters() = default;
    Connection Current() override { return {}; }
    CString DefaultAddress() override { return u"sqlite:/home/ana/r.db"; }
    std::vector<ConnectionStep> Test(const Connection& connection) override {
        tried.push_back(connection);
        return steps;
    }

    std::vector<Connection> tried;
    std::vector<ConnectionStep> steps;
};

class FieldsTrials : public testing::Test {
protected:
    FieldsTrials() {
        workstation.Set("ZEBX_LANGUAGE", "en");
        Platform::UserSettings::Instance()->Reset();
        fields.file = u"/srv/r.db";
    }

    Workstation workstation;
    ConnectionFields fields;
    ScriptedParameters parameters;
};

TEST_F(FieldsTrials, EachStepHasASignAndAWord) {
    parameters.steps = {{StepResult::Worked, u"one %s"},
                        {StepResult::Warning, u"two"},
                        {StepResult::Failed, u"three"}};
    const FieldsTrial trial = TestFields(fields, false, parameters);
    EXPECT_FALSE(trial.works);
    EXPECT_EQ(trial.report, u"✓ OK: one %s\n"
                            u"! Warning: two\n"
                            u"✗ Failed: three\n"
                            u"This connection cannot be used.");
}

TEST_F(FieldsTrials, AWarningIsNoFailure) {
    parameters.steps = {{StepResult::Worked, u"one"}, {StepResult::Warning, u"two"}};
    const FieldsTrial trial = TestFields(fields, true, parameters);
    EXPECT_TRUE(trial.works);
    EXPECT_EQ(trial.report, u"✓ OK: one\n! Warning: two\nThis connection can be used.");
    EXPECT_EQ(trial.connection.address, u"sqlite:/srv/r.db");
    EXPECT_TRUE(trial.connection.create);
}

TEST_F(FieldsTrials, ATestWithoutStepsWorksNot) {
    EXPECT_FALSE(TestFields(fields, false, parameters).works);
}

TEST_F(FieldsTrials, WrongFieldsAreNotTried) {
    fields.place = Place::Server;
    fields.port = u"x";
    const FieldsTrial trial = TestFields(fields, false, parameters);
    EXPECT_FALSE(trial.works);
    EXPECT_EQ(trial.wrong, Field::Host);
    EXPECT_THAT(parameters.tried, IsEmpty());
    EXPECT_EQ(trial.report,
              u"✗ Failed: Name the server, or choose \"Service name\".\n"
              u"✗ Failed: The port is a number from 1 to 65535. Left empty, it is 5432.\n"
              u"This connection cannot be used.");
}

TEST_F(FieldsTrials, TheUsersOwnRepositoryIsTheEmptyAddress) {
    fields.file = u"/home/ana/r.db";
    TestFields(fields, true, parameters);
    ASSERT_EQ(parameters.tried.size(), 1u);
    EXPECT_EQ(parameters.tried[0].address, u"");
    EXPECT_TRUE(parameters.tried[0].create);
}

TEST_F(FieldsTrials, OnlyAFileIsMade) {
    fields.place = Place::Service;
    fields.service = u"zeb";
    TestFields(fields, true, parameters);
    ASSERT_EQ(parameters.tried.size(), 1u);
    EXPECT_EQ(parameters.tried[0].address, u"postgresql://?service=zeb");
    EXPECT_FALSE(parameters.tried[0].create);
}

TEST_F(FieldsTrials, EveryTextStandsInBothLanguagesWithItsGaps) {
    const auto isStep = [](int number) {
        return number >= static_cast<int>(WindowText::Worked) &&
               number <= static_cast<int>(WindowText::Failed);
    };
    std::vector<CString> last;
    for (const char* language : {"en", "hr"}) {
        workstation.Set("ZEBX_LANGUAGE", language);
        Platform::UserSettings::Instance()->Reset();
        std::vector<CString> texts;
        for (int number = static_cast<int>(WindowText::Title);
             number <= static_cast<int>(WindowText::NoService); ++number) {
            const CString text = Msg(static_cast<WindowText>(number));
            EXPECT_EQ(text.find(u"%s") != CString::npos, isStep(number)) << number;
            EXPECT_EQ(text.find(u"20"), CString::npos) << number; // as an unknown message would
            texts.push_back(text);
        }
        EXPECT_NE(texts, last);
        last = texts;
    }
}

TEST_F(FieldsTrials, TheBlockHoldsNoOtherTexts) {
    for (const char* language : {"en", "hr"}) {
        std::ifstream file(std::string(ZEBX_SOURCE_DIR) + "/messages/" + language);
        int count = 0;
        for (std::string line; std::getline(file, line);)
            count += line >= "20210" && line < "20260" ? 1 : 0;
        EXPECT_EQ(count, static_cast<int>(WindowText::NoService) -
                             static_cast<int>(WindowText::Title) + 1);
    }
}

} // namespace
} // namespace Storage
