// A disk that is full in earnest.
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "host/qxbase.h"
#include "tests/machine/sweep.h"

namespace intake::testing {
namespace {

constexpr int kNoDisk = 77;

// A disk of so many pages of 4096 bytes; false if this machine lets nobody make one.
bool mountDisk(const std::string& folder, int pages) {
    const bool own = ::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    if (!own || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    const std::string size = "size=" + std::to_string(pages * 4096);
    return ::mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

class FullDisk : public ProgramTest {
  protected:
    // Imports arcs to a disk that is full sooner or later. 0 if all is as it should be.
    int importTo(int pages) {
        if (!mountDisk(path("disk"), pages)) return kNoDisk;
        const int32_t result = import("disk/DS");
        const Message& last = messages().back();
        const bool told = last.level == QX_ERROR &&
                          last.text.starts_with("Could not write " + path("disk/")) &&
                          last.text.ends_with(": No space left on device");
        const Outcome dumped = run({"dump", "@disk/DS"});
        const auto lines = std::count(dumped.errors.begin(), dumped.errors.end(), '\n');
        // A file that cannot be looked at for want of room is not called a broken one.
        ::setenv("TMPDIR", path("disk").c_str(), 1);
        const Outcome checked = run({"check", "--json", "@in.e00"});
        const bool unknown = checked.status == 1 && checked.object()["verdict"] == "unknown";
        return result == 0 && told && lines <= 1 && unknown ? 0 : 1;
    }
};

TEST_F(FullDisk, IsToldAndKeepsWhatFits) {
    std::string arcs = "EXP  0 X\nARC  2\n";
    for (int arc = 1; arc <= 2000; ++arc) {
        arcs +=
            "         1        12         1         2         3         4         1\n"
            " 1.0000000E+00 2.0000000E+00\n";
    }
    given(arcs + "        -1         0         0         0         0         0         0\nEOS\n");
    std::filesystem::create_directory(path("disk"));
    for (int pages = 1; pages <= 8; ++pages) {
        const pid_t child = ::fork();
        if (child == 0) ::_exit(importTo(pages));
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        if (WIFEXITED(status) && WEXITSTATUS(status) == kNoDisk) GTEST_SKIP() << "no disk to fill";
        EXPECT_EQ(status, 0) << pages << " pages";
    }
}

}  // namespace
}  // namespace intake::testing
