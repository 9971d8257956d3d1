// SPDX-License-Identifier: MIT
#include "storage/content/JobThread.h"

#include <gmock/gmock.h>

#include <future>

using namespace Storage;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Jobs note their numbers; the thread's first one waits until it is let go.
class JobThreads : public testing::Test {
protected:
    JobThreads() {
        EXPECT_TRUE(thread->Start());
        thread->Add([this] { gate.get_future().wait(); });
    }
    JobThread::Job Note(int number) {
        return [this, number] { done.push_back(number); };
    }
    void LetGo() { gate.set_value(); }

    std::promise<void> gate;
    std::vector<int> done; // the thread's, until it is idle
    std::unique_ptr<JobThread> thread = std::make_unique<JobThread>();
};

} // namespace

TEST_F(JobThreads, JobsAreDoneInTheirOrder) {
    for (int number = 1; number <= 4; ++number)
        thread->Add(Note(number));
    LetGo();
    thread->WaitUntilIdle();
    EXPECT_THAT(done, ElementsAre(1, 2, 3, 4));
}

TEST_F(JobThreads, WhatIsForgottenIsNotDoneAndTheRestKeepsItsOrder) {
    thread->AddForSure(Note(1));
    thread->Add(Note(2));
    thread->AddForSure(Note(3));
    thread->Forget();
    thread->Add(Note(4));
    LetGo();
    thread->WaitUntilIdle();
    EXPECT_THAT(done, ElementsAre(1, 3, 4));
}

TEST_F(JobThreads, TheEndWaitsForTheJobsThatAreLeft) {
    thread->Add(Note(1));
    thread->Add(Note(2));
    LetGo();
    thread.reset();
    EXPECT_THAT(done, ElementsAre(1, 2));
}

TEST_F(JobThreads, TheOwnerSeesWhatAJobSet) {
    bool isSet = false;
    thread->Add([&] { thread->Set([&] { isSet = true; }); });
    LetGo();
    thread->WaitUntil([&] { return isSet; });
    EXPECT_THAT(done, IsEmpty());
}
