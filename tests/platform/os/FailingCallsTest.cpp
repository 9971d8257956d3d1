// SPDX-License-Identifier: MIT
// Calls of the operating system that fail, are cut short, are interrupted, or before which
// the process is killed: what stands in the folder afterwards.
#include "platform/os/File.h"
#include "platform/os/FileSearch.h"
#include "platform/os/FreeName.h"

#include "FolderTest.h"
#include "support/Bytes.h"
#include "support/FailingCalls.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"

#include <filesystem>
#include <set>
#include <sys/wait.h>
#include <sys/xattr.h>

using Platform::Access;
using Platform::ReplaceFile;
using Platform::WriteFile;
namespace fs = std::filesystem;

namespace {

// How a file gets its bytes, and whether the file system knows files without a name.
struct Way {
    const char* name;
    bool (*write)(const CString& path, std::string_view bytes);
    bool nameless;
};

bool Load(const CString& path, std::string_view bytes) {
    return !WriteFile(path, bytes);
}
bool Replace(const CString& path, std::string_view bytes) {
    return !ReplaceFile(path, bytes, Access::Shared);
}

const Way kWays[] = {{"Written", Load, true},
                     {"WrittenBesideByName", Load, false},
                     {"Replaced", Replace, true},
                     {"ReplacedBesideByName", Replace, false}};

class FailingCallsOf : public FolderTest, public testing::WithParamInterface<Way> {
protected:
    bool Put(std::string_view bytes) { return GetParam().write(Path(u"a"), bytes); }
    static void Prepare(FailingCalls& calls) {
        if (!GetParam().nameless)
            calls.Fail("open", EOPNOTSUPP, 1);
    }
    void MakeOld() {
        MakeFile(Native("a"), kOld);
        // Of another mode than new files have.
        fs::permissions(Native("a"), fs::perms(0604));
    }
    // The calls that one write makes.
    std::vector<FailingCalls::Call> CallsOfAWrite() {
        // The first one looks for what killed processes left.
        if (fs::exists(Native("a"))) {
            EXPECT_TRUE(Put(kOld));
        }
        FailingCalls calls;
        Prepare(calls);
        EXPECT_TRUE(Put(kNew));
        return calls.Seen();
    }
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder.Native()))
            names.insert(entry.path().filename().string());
        return names;
    }

    static inline const std::string kOld = SomeBytes(1000, 1);
    static inline const std::string kNew = SomeBytes(3000, 2);
};

} // namespace

INSTANTIATE_TEST_SUITE_P(AFile, FailingCallsOf, testing::ValuesIn(kWays),
                         [](const auto& way) { return way.param.name; });

TEST_P(FailingCallsOf, LeaveTheOldFileOrTheNewOneAndNothingBeside) {
    MakeOld();
    const auto seen = CallsOfAWrite();
    ASSERT_GT(seen.size(), 8u);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        SCOPED_TRACE(seen[i].name + " " + seen[i].path);
        MakeOld();
        bool done = false;
        {
            FailingCalls calls;
            Prepare(calls);
            calls.FailNumber(i, EIO);
            done = Put(kNew);
        }
        EXPECT_EQ(Content("a"), done ? kNew : kOld);
        EXPECT_EQ(Rights("a"), 0604u);
        EXPECT_EQ(Names(), std::set<std::string>{"a"});
    }
}

TEST_P(FailingCallsOf, LeaveAWholeNewFileOrNone) {
    const auto seen = CallsOfAWrite();
    for (std::size_t i = 0; i < seen.size(); ++i) {
        SCOPED_TRACE(seen[i].name + " " + seen[i].path);
        fs::remove(Native("a"));
        bool done = false;
        {
            FailingCalls calls;
            Prepare(calls);
            calls.FailNumber(i, ENOSPC);
            done = Put(kNew);
        }
        EXPECT_EQ(Names(), done ? std::set<std::string>{"a"} : std::set<std::string>());
        EXPECT_EQ(Content("a"), done ? kNew : "");
    }
}

TEST_P(FailingCallsOf, OnlyTheFlushOfTheFolderAndTheLooksAtANameAreHarmless) {
    MakeOld();
    const auto seen = CallsOfAWrite();
    const std::string folder = m_folder.Native().string() + "/";
    for (std::size_t i = 0; i < seen.size(); ++i) {
        const auto& call = seen[i];
        SCOPED_TRACE(call.name + " " + call.path);
        const bool renamed = std::any_of(seen.begin(), seen.begin() + std::ptrdiff_t(i),
                                         [](const auto& each) { return each.name == "rename"; });
        const bool harmless = renamed || i == 0 || call.name == "llistxattr";
        FailingCalls calls;
        Prepare(calls);
        calls.FailNumber(i, EIO);
        EXPECT_EQ(Put(kNew), harmless);
    }
}

TEST_P(FailingCallsOf, AKilledProcessLeavesOneOfTheFilesWhole) {
    MakeOld();
    const auto seen = CallsOfAWrite();
    for (std::size_t i = 0; i < seen.size(); ++i) {
        SCOPED_TRACE(seen[i].name + " " + seen[i].path);
        MakeOld();
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            FailingCalls calls;
            Prepare(calls);
            calls.KillAt(i);
            Put(kNew);
            std::_Exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        EXPECT_TRUE(Content("a") == kOld || Content("a") == kNew);
        EXPECT_EQ(Rights("a"), 0604u);
        for (const std::string& name : Names()) {
            if (name == "a")
                continue;
            EXPECT_TRUE(Platform::FindFiles(Path(u"*z*")).empty());
            if (!GetParam().nameless) {
                fs::remove(Native(name));
                continue;
            }
            EXPECT_EQ(Content(name), kNew);
            MakeFile(Native(".zebx-" + std::to_string(getpid()) + "-0"), "of somebody who works");
            EXPECT_TRUE(PassesInAChildProcess([&] {
                // Another folder in between, so that this one is looked at again.
                const TemporaryFolder other;
                for (int time = 0; time < 2; ++time)
                    EXPECT_TRUE(Load(other.Path() + u"b", kNew));
                EXPECT_TRUE(Put(kNew));
            }));
            fs::remove(Native(".zebx-" + std::to_string(getpid()) + "-0"));
            EXPECT_EQ(Names(), std::set<std::string>{"a"}) << "the next one did not tidy up";
        }
    }
}

TEST_P(FailingCallsOf, ShortTransfersAndInterruptedCallsGoOn) {
    for (const std::size_t limit : {1u, 7u, 999u}) {
        FailingCalls calls;
        Prepare(calls);
        calls.Limit(limit);
        for (const char* name : {"read", "write", "fsync"})
            calls.Fail(name, EINTR, 3);
        EXPECT_TRUE(Put(kNew));
        std::string bytes;
        EXPECT_FALSE(Platform::ReadFile(Path(u"a"), bytes));
        EXPECT_EQ(bytes, kNew);
    }
}

TEST_P(FailingCallsOf, AnInterruptedCloseIsNotAFailure) {
    FailingCalls calls;
    Prepare(calls);
    calls.Fail("close", EINTR);
    EXPECT_TRUE(Put(kNew));
    EXPECT_EQ(Content("a"), kNew);
}

namespace {

class FailingSystemCalls : public FolderTest {};

} // namespace

TEST_F(FailingSystemCalls, ReadingFailsAndGivesNothing) {
    MakeFile(Native("a"), SomeBytes(5000));
    std::string bytes = "before";
    for (const char* name : {"open", "fstat", "read"}) {
        FailingCalls calls;
        calls.Fail(name, EIO);
        EXPECT_EQ(Platform::ReadFile(Path(u"a"), bytes), std::errc::io_error) << name;
        EXPECT_EQ(bytes, "");
    }
}

TEST_F(FailingSystemCalls, AFileIsRenamedToAFreeNameAlsoWhereOnlyLinksCanDoIt) {
    MakeFile(Native("a"), "mine");
    MakeFile(Native("taken"), "others'");
    FailingCalls calls;
    for (const int error : {EINVAL, ENOSYS}) {
        calls.Fail("renameat2", error);
        EXPECT_EQ(Platform::RenameToFreeName(Path(u"a"), Path(u"taken")), std::errc::file_exists);
        EXPECT_FALSE(Platform::RenameToFreeName(Path(u"a"), Path(u"b")));
        EXPECT_EQ(Content("b"), "mine");
        EXPECT_FALSE(Platform::RenameToFreeName(Path(u"b"), Path(u"a")));
    }
    EXPECT_TRUE(calls.HasSeen("link"));
    EXPECT_EQ(Content("taken"), "others'");
    EXPECT_EQ(EntryCount(), 2u);
}

TEST_F(FailingSystemCalls, ANameIsNotGivenWhereTheSystemRefuses) {
    MakeFile(Native("a"), "mine");
    FailingCalls calls;
    calls.Fail("renameat2", EIO);
    EXPECT_EQ(Platform::RenameToFreeName(Path(u"a"), Path(u"b")), std::errc::io_error);
    EXPECT_FALSE(calls.HasSeen("link"));
    EXPECT_EQ(Content("a"), "mine");
}

TEST_F(FailingSystemCalls, AFolderThatCannotBeListedHasNoFiles) {
    MakeFile(Native("a"), "");
    MakeFile(Native("b"), "");
    for (const char* name : {"opendir", "readdir"}) {
        FailingCalls calls;
        calls.Fail(name, EIO);
        EXPECT_TRUE(Platform::FindFiles(Path(u"*")).empty()) << name;
    }
    FailingCalls calls;
    EXPECT_EQ(Platform::FindFiles(Path(u"*")).size(), 4u);
}

TEST_F(FailingSystemCalls, AFolderThatCannotBeMadeIsTold) {
    FailingCalls calls;
    calls.Fail("mkdir", ENOSPC);
    EXPECT_FALSE(Platform::CreateFolderChain(Path(u"x\\y")));
    EXPECT_EQ(EntryCount(), 0u);
}
