// Outputs appear when they are whole, whatever the format.
#include "formats/output.h"

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "formats/formats.h"
#include "formats/geopackage/geopackage.h"
#include "tests/formats/formats_test.h"

namespace formats::testing {

namespace {

using intake::testing::fileBytes;
using intake::testing::writeFile;
namespace fs = std::filesystem;
using Names = std::vector<std::string>;

// Each format of layers as a file and, where it can be that, as a folder; or each of surfaces.
struct Form {
    const Format& format;
    bool folder;
};

std::vector<Form> forms(bool meshes = false) {
    std::vector<Form> all;
    for (const Format& format : formats()) {
        if (format.rasters) continue;  // which has tests of its own
        if ((format.meshes != nullptr) != meshes) continue;
        all.push_back({format, false});
        if (format.folders) all.push_back({format, true});
    }
    return all;
}

std::unique_ptr<Writer> make(const Form& form, const std::string& path, Options options = {}) {
    static const geopackage::Maker geoPackage;
    options.folder = form.folder;
    options.asIs = true;
    const WriterMaker* maker = form.format.maker;
    if (form.format.module == "geopackage") maker = &geoPackage;
    return maker->make(path, options);
}

void write(Writer& writer, int features) {
    writer.begin(layer("lines", GeometryType::kLineString, {{"text"}}));
    const Value text = std::string_view("some text");
    for (int i = 1; i <= features; ++i) {
        writer.add(i, Parts({{double(i), 2, 3, 4}}), {&text, 1});
    }
    writer.end();
}

// More than fits where a test has little room.
void writeMuch(const Form& form, const std::string& path) {
    if (form.format.meshes) {
        Mesh mesh;
        mesh.vertices.resize(200'000);
        return form.format.meshes->write(path, mesh, {});
    }
    auto writer = make(form, path);
    write(*writer, 200'000);
    writer->finish();
}

std::vector<Form> everyForm() {
    std::vector<Form> all = forms();
    for (const Form& each : forms(true)) all.push_back(each);
    return all;
}

class OutputTest : public FormatsTest {};

}  // namespace

TEST_F(OutputTest, AppearsWhenItIsWhole) {
    for (const Form& form : forms()) {
        SCOPED_TRACE(std::string(form.format.name) + (form.folder ? " in a folder" : ""));
        {
            auto writer = make(form, path("out"));
            write(*writer, 10);
            // Something grows beside it, but not under its name.
            EXPECT_FALSE(fs::exists(path("out")));
            EXPECT_EQ(files().size(), 1U);
        }
        EXPECT_EQ(files(), Names{});
        auto writer = make(form, path("out"));
        write(*writer, 10);
        writer->finish();
        EXPECT_EQ(files(), Names{"out"});
        EXPECT_EQ(fs::is_directory(path("out")), form.folder);

        // What is there is left alone, or is there until the new one is whole.
        EXPECT_EQ(complaint([&] { make(form, path("out")); }), path("out") + ": File exists");
        const auto size = [&] {
            uintmax_t bytes = 0;
            if (!form.folder) return fs::file_size(path("out"));
            for (const auto& entry : fs::directory_iterator(path("out")))
                bytes += entry.file_size();
            return bytes;
        };
        const uintmax_t small = size();
        make(form, path("out"), {.replace = true});
        EXPECT_EQ(size(), small);
        writer = make(form, path("out"), {.replace = true});
        write(*writer, 5000);
        EXPECT_EQ(size(), small);
        writer->finish();
        EXPECT_GT(size(), small);
        EXPECT_EQ(files(), Names{"out"});
        fs::remove_all(path("out"));
        EXPECT_EQ(complaint([&] { make(form, path("nowhere/out")); }),
                  path("nowhere/out") + ": No such file or directory");
    }
}

TEST_F(OutputTest, ReplacesNothingOfAnotherKind) {
    for (const Form& form : forms()) {
        SCOPED_TRACE(std::string(form.format.name) + (form.folder ? " in a folder" : ""));
        if (form.folder) {
            writeFile(path("out"), "a file");
            EXPECT_EQ(complaint([&] { make(form, path("out"), {.replace = true}); }),
                      path("out") + ": Not a directory");
            fs::remove(path("out"));
            fs::create_directory(path("out"));
            writeFile(path("out/diary.doc"), "of the user");
            EXPECT_EQ(complaint([&] { make(form, path("out/"), {.replace = true}); }),
                      path("out") +
                          ": holds diary.doc, which is not of this format, and is not "
                          "replaced");
            EXPECT_EQ(fileBytes(path("out/diary.doc")), "of the user");
            fs::remove(path("out/diary.doc"));
            // An empty folder is as good as none.
            auto writer = make(form, path("out/"));
            write(*writer, 1);
            writer->finish();
            EXPECT_EQ(files(), Names{"out"});
        } else {
            fs::create_directory(path("out"));
            EXPECT_EQ(complaint([&] { make(form, path("out"), {.replace = true}); }),
                      path("out") + ": Is a directory");
            EXPECT_NE(complaint([&] { make(form, "/dev/null", {.replace = true}); }), "nothing");
        }
        fs::remove_all(path("out"));
    }
}

// In a process of its own, whose files may not grow beyond 300 kB.
TEST_F(OutputTest, AWriteThatFailsIsToldWithItsReason) {
    for (const Form& form : everyForm()) {
        SCOPED_TRACE(std::string(form.format.name) + (form.folder ? " in a folder" : ""));
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{300'000, 300'000};
            setrlimit(RLIMIT_FSIZE, &limit);
            const std::string said = complaint([&] { writeMuch(form, path("out")); });
            _exit(said == path("out") + ": File too large" ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(files(), Names{});
    }
}

TEST_F(OutputTest, AFullDiskIsOneClearMessage) {
    fs::create_directory(path("disk"));
    if (mount("none", path("disk").c_str(), "tmpfs", 0, "size=400k") != 0) {
        GTEST_SKIP() << "no right to make a small disk";
    }
    for (const Form& form : everyForm()) {
        SCOPED_TRACE(std::string(form.format.name) + (form.folder ? " in a folder" : ""));
        EXPECT_EQ(complaint([&] { writeMuch(form, path("disk/out")); }),
                  path("disk/out") + ": No space left on device");
        EXPECT_TRUE(fs::is_empty(path("disk")));
    }
    umount(path("disk").c_str());
}

TEST_F(OutputTest, NamesOutOfFilesStayInTheFolder) {
    for (const Form& form : forms()) {
        if (!form.folder) continue;
        SCOPED_TRACE(form.format.name);
        auto writer = make(form, path("out"));
        Names names;
        for (const char* name : {"../up", "/etc/x", "", ".", "..", ".hidden", "con", "Com1.x",
                                 "a\nb", "A?*b", "a__b", "end.", "ROADS", "roads", "\u00e4"}) {
            names.push_back(writer->begin(layer(name, GeometryType::kNone)));
            writer->end();
        }
        names.push_back(writer->begin(layer(std::string(99, 'x') + "\u00e4", GeometryType::kNone)));
        writer->end();
        EXPECT_EQ(names, (Names{"_.._up", "_etc_x", "_", "__", "_._", "_.hidden", "_con", "_Com1.x",
                                "a_b", "A__b", "a__b_2", "end_", "ROADS", "roads_2", "\u00e4",
                                std::string(99, 'x')}));
        EXPECT_TRUE(writer->text({"../log", "text/plain", "", "", "said"}));
        EXPECT_TRUE(writer->text({"meta", "text/xml", "", "ROADS", "<a/>"}));
        writer->finish();
        EXPECT_EQ(files(), Names{"out"});
        const std::string ending(form.format.endings.substr(0, form.format.endings.find(' ')));
        for (const std::string& name : names) EXPECT_TRUE(fs::exists(path("out/" + name + ending)));
        EXPECT_EQ(fileBytes(path("out/_.._log.txt")), "said");
        EXPECT_EQ(fileBytes(path("out/ROADS.meta.xml")), "<a/>");
        fs::remove_all(path("out"));
    }
}

TEST(Formats, AreFoundByNameAndEnding) {
    for (const Format& format : formats()) {
        EXPECT_EQ(formatNamed(format.name), &format);
        EXPECT_TRUE(format.maker || !format.module.empty() || format.meshes);
        const std::string first(format.endings.substr(0, format.endings.find(' ')));
        EXPECT_EQ(formatOf("some.dir/out" + first), &format);
    }
    EXPECT_EQ(formatOf("OUT.GeoJSON")->name, "geojson");
    EXPECT_EQ(formatOf("out.json")->name, "geojson");
    EXPECT_EQ(formatOf("out.geojsonl")->name, "geojsonl");
    for (const char* path : {"", ".gpkg", "gpkg", "out.shp", "out.gpkg/"}) {
        EXPECT_EQ(formatOf(path), nullptr) << path;
    }
    EXPECT_EQ(formatNamed("GeoPackage "), nullptr);
}

}  // namespace formats::testing
