#include "host/qxbase.h"
#include "tests/support/import_test.h"
#include "tin/member_files.h"
#include "tin/open_surfaces.h"
#include "tin/properties.h"
#include "tin/sections.h"

namespace intake::testing {
namespace {

// The store of surfaces by itself, with the messages that it gives.
class TinStore : public ::testing::Test {
  protected:
    TinStore() {
        mesink_([](int32_t, const char* text,
                   void* user) { static_cast<std::vector<std::string>*>(user)->push_back(text); },
                &told_);
        TININI();
    }
    ~TinStore() override {
        mesink_(nullptr, nullptr);
        rearmTin();
    }
    static int32_t scratch() {
        Handle handle{};
        Status status = kReported;
        TINSCR(handle, 1, status);
        EXPECT_EQ(status, kSuccess);
        return handle;
    }
    template <class T>
    static T property(int32_t kind) {
        T value{};
        tifget(kind, &value);
        return value;
    }
    std::string path(const char* name) const { return workspace_.path(name); }

    Workspace workspace_;
    std::vector<std::string> told_;
};

TEST_F(TinStore, HandlesAreReusedAndTheTableGrows) {
    for (int32_t handle = 1; handle <= 129; ++handle) EXPECT_EQ(scratch(), handle);
    const Tin* last = currentTin();
    EndTin(1);
    EXPECT_EQ(currentTin(), last);
    EndTin(5);
    EXPECT_EQ(scratch(), 1);
    EndTin(1);
    // The first that is still open follows the current one.
    const int32_t count = 42;
    EndTin(129);
    tifset(&count, kNodeCount);
    EXPECT_EQ(scratch(), 1);
    EXPECT_EQ(property<int32_t>(kNodeCount), 0);
    EndTin(1);
    EXPECT_EQ(property<int32_t>(kNodeCount), 42);
    EXPECT_ANY_THROW(EndTin(5));
    EXPECT_ANY_THROW(EndTin(-1));
    EXPECT_ANY_THROW(EndTin(1000));
    EXPECT_EQ(told_, (std::vector<std::string>{"Tin is closed", "Invalid Tin handle value",
                                               "Invalid Tin handle value"}));
    EndTin(0);
    EXPECT_EQ(currentTin(), nullptr);
    EXPECT_EQ(scratch(), 1);
}

TEST_F(TinStore, PropertiesStandInForOthersThatAreZero) {
    scratch();
    EXPECT_EQ(currentTin()->optionValue, 1);
    const int32_t seven = 7;
    const int32_t eight = 8;
    tifset(&seven, kSecondHullCount);
    EXPECT_EQ(property<int32_t>(kHullCount), 7);
    tifset(&eight, kHullCount);
    EXPECT_EQ(property<int32_t>(kHullCount), 8);
    tifset(&seven, kTriangleCount);
    tifset(&eight, kNodeCount);
    EXPECT_EQ(property<int32_t>(kSecondTriangleCount), 7);
    EXPECT_EQ(property<int32_t>(kSecondNodeCount), 8);
    const float low = -2.5F;
    const float high = 9;
    tifset(&low, kLowestZ);
    tifset(&high, kHighestZ);
    currentTin()->zFactor = -2;
    EXPECT_EQ(property<float>(kLowestZ), -18);
    EXPECT_EQ(property<float>(kHighestZ), 5);
    tifset(&low, kLowestZ);
    EXPECT_EQ(property<float>(kLowestZ), -2.5F);
    EXPECT_EQ(property<float>(kHighestZ), 5);
    EXPECT_EQ(property<float>(kNoDataZ), -3.4028235e38F);
    EXPECT_FLOAT_EQ(property<float>(kFormatVersion), 7.01F);
    tifset(&seven, 99);
    EXPECT_EQ(property<int32_t>(99), 0);
}

TEST_F(TinStore, VersionsComeBackWhole) {
    for (int32_t version = 60000; version < 60200; ++version) {
        // Tenths and hundredths have one digit each in the real form.
        if (version % 100 > 9) continue;
        const int32_t word = versionWord(version);
        EXPECT_NE(word, version);
        EXPECT_EQ(call(tinver_, word), version);
    }
    for (const int32_t version : {60200, 60300, 70001, 80000}) {
        EXPECT_EQ(versionWord(version), version);
        EXPECT_EQ(call(tinver_, version), version);
    }
    EXPECT_EQ(call(tinver_, 60100), 60100);
    EXPECT_EQ(call(tinver_, 0), 0);
}

TEST_F(TinStore, SurfacesAreReopenedInTheirGeneration) {
    Status status = kReported;
    TINCRE(Name(path("NEW")), status);
    ASSERT_EQ(status, kSuccess);
    const int32_t nodes = 3;
    tifset(&nodes, kNodeCount);
    TINEND();
    const TinOption update[] = {{1, 2}};
    Tin* tin = TIN_OpenTin(path("NEW/"), update);
    ASSERT_NE(tin, nullptr);
    EXPECT_EQ(tin->path, path("NEW"));
    EXPECT_EQ(tin->version, kNewestGeneration);
    EXPECT_EQ(tin->environment.nodeCount, 3);
    closeTin(tin);

    // The same with the names of the older generation, and the version as a real.
    std::filesystem::create_directory(path("OLD"));
    for (const std::string name : {"env", "msk", "nxy", "nz", "nod", "edg", "hul"}) {
        std::filesystem::copy_file(workspace_.path("NEW/t" + name), workspace_.path("OLD/" + name));
    }
    tin = TIN_OpenTin(path("OLD"), update);
    ASSERT_NE(tin, nullptr);
    tin->version = kOldestGeneration;
    closeTin(tin);
    EXPECT_EQ(fileBytes(path("OLD/env")).substr(88, 4), std::string("\x40\xC0\0\0", 4));
    // Reading changes nothing.
    tin = TIN_OpenTin(path("OLD"), {});
    ASSERT_NE(tin, nullptr);
    EXPECT_EQ(tin->version, kOldestGeneration);
    tin->environment.nodeCount = 77;
    closeTin(tin);
    EXPECT_EQ(fileBytes(path("OLD/env")).substr(0, 4), std::string("\0\0\0\3", 4));
    EXPECT_TRUE(told_.empty());

    EXPECT_EQ(TIN_OpenTin(path("NONE"), {}), nullptr);
    std::filesystem::remove(path("OLD/env"));
    std::filesystem::create_directory(path("OLD/env"));
    EXPECT_EQ(TIN_OpenTin(path("OLD"), {}), nullptr);
    Name member;
    EXPECT_ANY_THROW(tifnam(Name(path("NEW")), member, 57));
    EXPECT_EQ(told_, (std::vector<std::string>{"Tin " + path("NONE") + " doesn't exist.",
                                               "Cannot open Tin " + path("OLD"),
                                               "Bad tin aname code (tifnam)."}));
}

}  // namespace
}  // namespace intake::testing
