#include <sys/stat.h>

#include <cstdio>
#include <set>

#include "tests/support/containers.h"
#include "tests/support/sample_test.h"

namespace intake::testing {
namespace {

using Filters = std::vector<std::string>;

class Containers : public SampleTest {
  protected:
    const std::string text_ = fileBytes(sample("wcr.e00"));
    const std::string other_ = fileBytes(sample("ptext.e00"));

    // What an import of the file stores, and that it went well.
    std::string imported(const std::string& file) {
        const std::string workspace = path("ws" + std::to_string(++count_));
        std::filesystem::create_directory(workspace);
        const Outcome outcome = run({"import", file, workspace + "/DS"});
        EXPECT_EQ(outcome.status, 0) << file << ": " << outcome.errors;
        EXPECT_EQ(outcome.errors.find(temporary()), std::string::npos) << outcome.errors;
        return run({"dump", workspace + "/DS"}).output;
    }
    std::string failed(const std::string& file, const std::vector<std::string>& words = {}) {
        std::vector<std::string> all = {"import", file, "@FAILED"};
        all.insert(all.end(), words.begin(), words.end());
        const std::string text = theError(run(all));
        EXPECT_FALSE(std::filesystem::exists(path("FAILED")));
        return text;
    }

  private:
    int count_ = 0;
};

struct Shape {
    const char* file;
    const char* format;
    Filters filters;
    const char* container;
    const char*
        flipped;  // what is said where a byte in the middle is another; "" if nothing can be
};

const Shape kShapes[] = {
    {"a.e00.gz", "raw", {"gzip"}, "gzip", "damaged"},
    {"a.e00.Z", "raw", {"compress"}, "compress", ""},
    {"a.e00.bz2", "raw", {"bzip2"}, "bzip2", "damaged"},
    {"a.e00.xz", "raw", {"xz"}, "xz", "damaged"},
    {"a.e00.zst", "raw", {"zstd"}, "zstd", ""},
    {"a.e00.gz.xz", "raw", {"gzip", "xz"}, "gzip in xz", "cut short"},
    {"a.zip", "zip", {}, "zip", "damaged"},
    {"a.tar", "ustar", {}, "tar", ""},
    {"old.tar", "v7tar", {}, "tar", ""},
    {"a.tgz", "ustar", {"gzip"}, "tar in gzip", "damaged"},
    {"a.tar.bz2", "ustar", {"bzip2"}, "tar in bzip2", "damaged"},
    {"a.zip.gz", "zip", {"gzip"}, "zip in gzip", "damaged"},
};

TEST_F(Containers, GiveTheFileThatIsInThemAsIfItLayThere) {
    const std::string plain = imported(sample("wcr.e00"));
    for (const Shape& shape : kShapes) {
        writeFile(path(shape.file), packed(shape.format, shape.filters, {{"maps/a.e00", text_}}));
        EXPECT_EQ(imported(path(shape.file)), plain) << shape.file;
        const Outcome checked = run({"check", "--json", "@" + std::string(shape.file)});
        EXPECT_EQ(checked.object()["container"], shape.container);
        EXPECT_EQ(checked.object()["verdict"], "whole");
        // Packing and unpacking take them too.
        ASSERT_EQ(run({"pack", "@" + std::string(shape.file), "@packed.e00"}).status, 0);
        ASSERT_EQ(run({"unpack", "@packed.e00", "@plain.e00"}).status, 0);
        EXPECT_EQ(imported(path("plain.e00")), plain) << shape.file;
        std::filesystem::remove(path("packed.e00"));
        std::filesystem::remove(path("plain.e00"));
    }
}

TEST_F(Containers, AreConvertedInOneStep) {
    writeFile(path("old.zip"), packed("zip", {}, {{"maps/wcr.e00", text_}, {"b.e00", other_}}));
    const auto convert = [&](const std::string& file, const std::string& output) {
        return run({"convert", file, output, "--format", "geojson", "--quiet"}).status;
    };
    EXPECT_EQ(convert("@old.zip::wcr.e00", "@zipped"), convert(sample("wcr.e00"), "@plain"));
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path("plain"))) {
        const std::string other = path("zipped/" + entry.path().filename().string());
        EXPECT_TRUE(fileBytes(entry.path().string()) == fileBytes(other)) << other;
        ++files;
    }
    EXPECT_GT(files, 5);
}

TEST_F(Containers, ThatAreBrokenAreToldInOneLine) {
    for (const Shape& shape : kShapes) {
        const std::string whole = packed(shape.format, shape.filters, {{"maps/a.e00", text_}});
        writeFile(path(shape.file), whole.substr(0, whole.size() / 2));
        const std::string name = path(shape.file);
        const std::string shown = std::string_view(shape.file).ends_with(".Z") ? "" : "cut short";
        if (!shown.empty()) {
            const std::string told = failed(name);
            EXPECT_TRUE(told.starts_with(name) && told.find(shown) != std::string::npos) << told;
            // What there is of it is of the right kind all the same.
            EXPECT_EQ(run({"check", "--json", name}).object()["verdict"], "partial") << name;
        }
        if (*shape.flipped == '\0') continue;
        std::string other = whole;
        other[whole.size() / 2] = static_cast<char>(other[whole.size() / 2] ^ 0x40);
        writeFile(name, other);
        const std::string told = failed(name);
        EXPECT_NE(told.find(shape.flipped), std::string::npos) << told;
    }
    // A wrong sum alone: what was expanded looks as it should.
    std::string gzip = packed("raw", {"gzip"}, {{"a", text_}});
    gzip[gzip.size() - 6] = static_cast<char>(gzip[gzip.size() - 6] ^ 1);
    writeFile(path("sum.gz"), gzip);
    EXPECT_EQ(failed(path("sum.gz")),
              path("sum.gz") + " is damaged: its content does not fit its checksum");
    writeFile(path("locked.zip"), packed("zip", {}, {{"a.e00", text_}}, "secret"));
    EXPECT_NE(failed(path("locked.zip")).find("encrypted"), std::string::npos);
}

TEST_F(Containers, OfSeveralFilesOneIsChosenByItsName) {
    const Contents both = {{"maps/a.e00", text_}, {"read.me", "hello"}, {"b.e00", other_}};
    for (const char* format : {"zip", "ustar"}) {
        const std::string file = path(std::string(format) + ".archive");
        writeFile(file, packed(format, {}, both));
        const Outcome asked = run({"import", file, "@DS"});
        EXPECT_EQ(asked.status, 2);
        EXPECT_EQ(asked.errors, "intake: " + file +
                                    " holds several interchange files; give one as " + file +
                                    "::NAME:\n  maps/a.e00\n  b.e00\n");
        const std::string plain = imported(sample("wcr.e00"));
        EXPECT_EQ(imported(file + "::maps/a.e00"), plain);
        EXPECT_EQ(imported(file + "::a.e00"), plain);
        EXPECT_NE(run({"import", file + "::c.e00", "@DS"}).errors.find("holds no file c.e00"),
                  std::string::npos);
        // To check it is to check all of them.
        const std::string checked = run({"check", "--json", file}).output;
        EXPECT_EQ(std::count(checked.begin(), checked.end(), '\n'), 2);
        EXPECT_NE(checked.find(R"(::b.e00","verdict":"whole")"), std::string::npos) << checked;
    }
    writeFile(path("none.zip"), packed("zip", {}, {{"read.me", "hello"}, {"b\x1b[2J", "x"}}));
    const Outcome none = run({"import", "@none.zip", "@DS"});
    EXPECT_EQ(none.status, 1);
    EXPECT_NE(none.errors.find("holds no interchange file; in it are:"), std::string::npos);
    EXPECT_NE(none.errors.find("read.me: a text"), std::string::npos) << none.errors;
    EXPECT_EQ(none.errors.find('\x1b'), std::string::npos);
    // One that another of the same name follows is an older state of it.
    writeFile(path("twice.tar"), packed("ustar", {}, {{"a.e00", other_}, {"a.e00", text_}}));
    EXPECT_EQ(imported(path("twice.tar")), imported(sample("wcr.e00")));
}

// Volumes are cut as by hand, in the middle of lines' runs.
Contents volumesOf(const std::string& text) {
    Contents volumes;
    for (int each = 0; each < 3; ++each) {
        const std::size_t end =
            each < 2 ? text.find('\n', text.size() * (each + 1) / 3) + 1 : text.size();
        const std::size_t start = each == 0 ? 0 : text.find('\n', text.size() * each / 3) + 1;
        volumes.emplace_back("d/a.e0" + std::to_string(each), text.substr(start, end - start));
    }
    return volumes;
}

TEST_F(Containers, VolumesAreFoundBesideTheFirst) {
    const std::string plain = imported(sample("wcr.e00"));
    const Contents volumes = volumesOf(text_);
    Contents compressed;
    for (const auto& [name, text] : volumes) {
        compressed.emplace_back(name + ".gz", packed("raw", {"gzip"}, {{"", text}}));
    }
    const std::string inner = packed("ustar", {}, compressed);
    const std::pair<const char*, std::string> cases[] = {
        {"a.zip", packed("zip", {}, volumes)},
        {"b.zip", packed("zip", {}, compressed)},
        {"c.tgz", packed("ustar", {"gzip"}, {volumes[2], volumes[0], volumes[1]})},
        {"d.zip", packed("zip", {}, {{"all.tar", inner}})},
    };
    for (const auto& [file, bytes] : cases) {
        writeFile(path(file), bytes);
        EXPECT_EQ(imported(path(file)), plain) << file;
    }
    // As files of their own: compressed, one of them not, and another file behind them.
    for (int each = 0; each < 3; ++each) {
        const std::string name = path("a.e0" + std::to_string(each));
        writeFile(each == 1 ? name : name + ".gz",
                  each == 1 ? volumes[1].second : compressed[each].second);
    }
    writeFile(path("a.e03.gz"), packed("raw", {"gzip"}, {{"", other_}}));
    EXPECT_EQ(imported(path("a.e00.gz")), plain);
    EXPECT_EQ(run({"check", "--json", "@a.e00.gz"}).object()["volumes"].size(), 3U);
    std::filesystem::remove(path("a.e02.gz"));
    const Outcome missing = run({"import", "@a.e00.gz", "@MISSING"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.errors.find("next volume " + path("a.e02") + " does not exist"),
              std::string::npos)
        << missing.errors;
}

TEST_F(Containers, ThatExpandWithoutEndAreEndedEarly) {
    const std::string zeros(std::size_t{32} << 20, '\0');
    const std::string start = packed("raw", {"gzip"}, {{"", "EXP  0 X\nARC  2\n"}});
    const std::string block = packed("raw", {"gzip"}, {{"", zeros}});
    std::string bomb = start;
    while (bomb.size() < 320 * block.size()) bomb += block;
    writeFile(path("bomb.e00.gz"), bomb);  // ten thousand million zeros in ten million bytes
    const std::string text = "EXP  0 X\nARC  2\n" + zeros;
    writeFile(path("bomb.zip"), packed("zip", {}, {{"a.e00", text}}));
    writeFile(path("bomb.bz2"), packed("raw", {"bzip2"}, {{"", text}}));
    writeFile(path("bomb.tgz"), packed("ustar", {"gzip"}, {{"x", zeros}, {"a.e00", text_}}));
    writeFile(path("deep.zip"),
              packed("zip", {}, {{"a.gz", packed("raw", {"gzip"}, {{"", text}})}}));
    for (const char* file : {"bomb.e00.gz", "bomb.zip", "bomb.bz2", "bomb.tgz", "deep.zip"}) {
        EXPECT_EQ(failed(path(file)).find(path(file) + " expands to more than 1000 times its size"),
                  0U)
            << file;
    }
    writeFile(path("a.e00.gz"), packed("raw", {"gzip"}, {{"", text_}}));
    EXPECT_EQ(
        failed(path("a.e00.gz"), {"--max-size", "100K"}),
        path("a.e00.gz") + " expands to more than 102400 bytes; --max-size sets another limit");
    std::string nested = text_;
    for (int level = 0; level < 6; ++level) nested = packed("zip", {}, {{"a", nested}});
    writeFile(path("nested.zip"), nested);
    EXPECT_NE(failed(path("nested.zip")).find("in more than 4 others"), std::string::npos);
}

// Every file below a folder.
std::set<std::string> filesBelow(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        names.insert(entry.path().string());
    }
    return names;
}

TEST_F(Containers, NamesInThemAreNoPaths) {
    const std::string plain = imported(sample("wcr.e00"));
    for (const std::string& name :
         {std::string("../x.e00"), std::string("../../../x.e00"), path("absolute.e00"),
          std::string("tmp/../../y.e00"), std::string("\x1b[2J\n.e00"), std::string("...e00"),
          std::string("/"), std::string(3000, 'n') + ".e00"}) {
        writeFile(path("evil.tar"), packed("pax", {}, {{name, text_}}));
        const auto before = filesBelow(path(""));
        ASSERT_EQ(run({"import", "@evil.tar", "@EVIL"}).status, name == "/" ? 1 : 0) << name;
        auto after = filesBelow(path(""));
        std::erase_if(after, [&](const std::string& file) {
            return before.contains(file) || file.starts_with(path("EVIL")) ||
                   file.starts_with(path("info"));
        });
        EXPECT_EQ(after, std::set<std::string>{});
        std::filesystem::remove_all(path("EVIL"));
        std::filesystem::remove_all(path("info"));
    }
}

TEST_F(Containers, StandardInputIsAFileToo) {
    const std::string plain = imported(sample("wcr.e00"));
    writeFile(path("a.tgz"), packed("ustar", {"gzip"}, volumesOf(text_)));
    const std::string intake = INTAKE_BINARY_DIR "/bin/intake ";
    int count = 0;
    for (const std::string& file : {sample("wcr.e00"), path("a.tgz")}) {
        const std::string workspace = path("piped" + std::to_string(++count));
        std::filesystem::create_directory(workspace);
        const std::string command = "cat " + file + " | " + intake + "import --quiet - " +
                                    workspace + "/DS 2>" + path("errors");
        EXPECT_EQ(std::system(command.c_str()), 0) << fileBytes(path("errors"));
        EXPECT_EQ(run({"dump", workspace + "/DS"}).output, plain);
    }
    // Of several one is named, and to check them would be to read it twice.
    writeFile(path("two.tar"), packed("ustar", {}, {{"a.e00", text_}, {"b.e00", other_}}));
    const auto fed = [&](const std::string& words) {
        return std::system((intake + words + " <" + path("two.tar") + " >" + path("output") +
                            " 2>" + path("errors"))
                               .c_str());
    };
    EXPECT_EQ(fed("import --quiet -::a.e00 " + path("piped1/CHOSEN")), 0);
    EXPECT_NE(fed("import - " + path("DS")), 0);
    EXPECT_NE(fileBytes(path("errors")).find("give one as -::NAME:\n  a.e00"), std::string::npos);
    EXPECT_NE(fed("check --json -"), 0);
    EXPECT_NE(fileBytes(path("output")).find("\"verdict\":\"unknown\""), std::string::npos);
    EXPECT_NE(std::system((intake + "import --max-size 1K - " + path("DS") + " <" +
                           sample("wcr.e00") + " 2>" + path("errors"))
                              .c_str()),
              0);
    EXPECT_EQ(fileBytes(path("errors")),
              "error: standard input has more than 1024 bytes; --max-size sets another limit\n");
}

}  // namespace
}  // namespace intake::testing
