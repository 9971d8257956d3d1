// SPDX-License-Identifier: MIT
// The program is killed at many moments of the pull of a catalogue: the catalogue's file is
// wholly as it was or wholly as the repository has it, and the same verb ends right afterwards.
//
// By default at a few moments, at 200 with ZEBX_EVERY_FAULT=1 in the environment.
#include "FaultyRun.h"
#include "Workplace.h"
#include "app/CatalogueStations.h"

#include <iostream>

using namespace AppTest;

namespace {

std::size_t Moments() {
    return std::getenv("ZEBX_EVERY_FAULT") ? 200 : 24;
}

std::string GenerationText(const std::string& generation) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<catalogue reference=\"TEST_CATALOG\">\n";
    for (int i = 0; i < 200; ++i)
        text += "  <item guid=\"" + std::to_string(i) + "\" name=\"Part " + generation +
                "\" group=\"no\"/>\n";
    return text + "</catalogue>\n";
}

class CatalogueKills : public CatalogueStations {
protected:
    CatalogueKills() {
        WriteCatalogue(GenerationText("new"));
        EXPECT_EQ(ana.Zebx(kPush).status, 0);
        WriteCatalogue(GenerationText("old"));
        const Snapshot before(ana);
        EXPECT_EQ(ana.Zebx(kPull).status, 0);
        m_pulled = Bytes(Parts(ana));
        before.PutBack();
    }

    bool IsWhole() const {
        const std::string text = Bytes(Parts(ana));
        return text == GenerationText("old") || text == m_pulled;
    }
    const std::string& Pulled() const { return m_pulled; }

    const std::vector<std::string> kPush{"push", "catalogue:TEST_CATALOG"};
    const std::vector<std::string> kPull{"pull", "catalogue:TEST_CATALOG"};

private:
    std::string m_pulled;
};

} // namespace

TEST_F(CatalogueKills, DuringAPullLeaveTheCatalogueAsItWasOrAsTheRepositoryHasIt) {
    const Snapshot before(ana);
    const std::size_t calls = RunFaulty(ana, kPull).calls.size();
    std::size_t killed = 0;
    const std::size_t count = Moments();
    for (std::size_t i = 0; i < count && !HasFailure(); ++i) {
        before.PutBack();
        const std::size_t moment = calls * i / count;
        SCOPED_TRACE("call " + std::to_string(moment) + " of " + std::to_string(calls));
        killed +=
            RunFaulty(ana, kPull, [&](FailingCalls& failing) { failing.KillAt(moment); }).killed
                ? 1
                : 0;
        EXPECT_TRUE(IsWhole());
        EXPECT_EQ(ana.Zebx(kPull).status, 0);
        EXPECT_EQ(Bytes(Parts(ana)), Pulled());
    }
    std::cout << "killed " << killed << " of " << count << " runs, " << calls << " calls long\n";
    EXPECT_GT(killed, count / 2);
}

// Whatever call on the catalogue's file fails.
TEST_F(CatalogueKills, AFullDiskLeavesTheCatalogueAsItWasAndTheRunDoesNotEndWell) {
    const Snapshot before(ana);
    const auto calls = RunFaulty(ana, kPull).calls;
    std::size_t tried = 0;
    for (std::size_t i = 0; i < calls.size() && !HasFailure(); ++i) {
        if (calls[i].find("TEST_CATALOG") == std::string::npos)
            continue;
        ++tried;
        before.PutBack();
        SCOPED_TRACE("call " + std::to_string(i) + " of " + std::to_string(calls.size()));
        const FaultyEnd end =
            RunFaulty(ana, kPull, [&](FailingCalls& failing) { failing.FailNumber(i, ENOSPC); });
        EXPECT_TRUE(IsWhole());
        if (end.status == 0) {
            EXPECT_EQ(Bytes(Parts(ana)), Pulled()) << end.err;
        }
    }
    EXPECT_GT(tried, 0u);
}
