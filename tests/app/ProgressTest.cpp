// SPDX-License-Identifier: MIT
#include "app/Progress.h"
#include "InProcess.h"

#include <gmock/gmock.h>

using namespace App;
using namespace AppTest;
using testing::EndsWith;
using testing::IsEmpty;
using ZEBGis::CCoreProgressBar;

namespace {

class ProgressLine : public InProcess {
protected:
    // What was shown since the last call.
    std::string Take() {
        std::string shown = stream.str();
        stream.str("");
        return shown;
    }

    std::ostringstream stream;
    TerminalSink terminal{stream, {.progressWidth = 100}};
    CCoreProgressBar bar;
};

TEST_F(ProgressLine, HasTheBarsCaptionAndThenItsTextAndPositionBesideTheCounts) {
    Progress progress(terminal);
    progress.Begin(u"catalogues");
    bar.SetCaption(u"Loading catalogues");
    bar.SetRange(0, 5);
    bar.Show();
    EXPECT_EQ(Take(), "Loading catalogues:  0 s");
    bar.SetPos(1);
    EXPECT_THAT(Take(), IsEmpty()); // its text is still the former's
    bar.SetText(u"Catalogues: Pipes");
    EXPECT_THAT(Take(), EndsWith("\rCatalogues: Pipes (2 of 5)  0 s"));
    Platform::TellFileStep(Platform::FileStep::ItemLoaded);
    EXPECT_THAT(Take(), EndsWith("\rCatalogues: Pipes (2 of 5)  1 items loaded  0 s"));
}

TEST_F(ProgressLine, GoesBackToTheSelectionWhenTheBarIsHidden) {
    Progress progress(terminal);
    progress.Begin(u"catalogues");
    bar.Show();
    bar.Hide();
    Take();
    Platform::TellFileStep(Platform::FileStep::Written);
    EXPECT_THAT(Take(), EndsWith("\rcatalogues:  1 written  0 s"));
}

TEST_F(ProgressLine, ForgetsABarThatStayedWithTheNextSelection) {
    Progress progress(terminal);
    progress.Begin(u"catalogues");
    bar.SetCaption(u"Loading catalogues");
    bar.Show();
    progress.Begin(u"items");
    Take();
    Platform::TellFileStep(Platform::FileStep::ItemLoaded);
    EXPECT_THAT(Take(), EndsWith("\ritems:  1 items loaded  0 s"));
}

TEST_F(ProgressLine, IsNotTheBarsPlaceAnyLongerAtItsEnd) {
    { const Progress progress(terminal); }
    bar.SetCaption(u"Loading catalogues");
    bar.Show();
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(ProgressLine, ShowsNoBarWhereNoProgressIsShown) {
    TerminalSink silent(stream, {});
    const Progress progress(silent);
    bar.SetCaption(u"Loading catalogues");
    bar.Show();
    EXPECT_THAT(Take(), IsEmpty());
}

} // namespace
