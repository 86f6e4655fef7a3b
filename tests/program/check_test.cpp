#include <sys/stat.h>

#include <map>

#include "tests/support/sample_test.h"

namespace intake::testing {
namespace {

using namespace std::string_literals;

class Check : public SampleTest {
  protected:
    json checked(const std::string& file, int status) {
        const Outcome outcome = run({"check", "--json", file});
        EXPECT_EQ(outcome.status, status) << outcome.output << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return outcome.object();
    }
};

// The records that a file has in a section, as it is known of it.
const std::map<std::string, std::string> kCounted = {
    {"ARC", "ARC"}, {"LAB", "LAB"}, {"CNT", "CNT"}, {"PAL", "PAL"}, {"PFF", "PFF"}, {"TOL", "TOL"}};

// Those of the project, and of a folder that INTAKE_SAMPLES names, or of the usual one.
std::vector<std::filesystem::path> samples() {
    std::vector<std::filesystem::path> files;
    const char* more = std::getenv("INTAKE_SAMPLES");
    for (const char* folder :
         {INTAKE_SOURCE_DIR "/samples", more ? more : INTAKE_SOURCE_DIR "/../shared/samples"}) {
        if (!std::filesystem::is_directory(folder)) continue;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".e00") files.push_back(entry.path());
        }
    }
    return files;
}

TEST_F(Check, EverySampleIsWholeAndIsWhatIsKnownOfIt) {
    for (const auto& file : samples()) {
        const json found = checked(file.string(), 0);
        EXPECT_EQ(found["verdict"], "whole") << file;
        std::filesystem::path known = file;
        const json expected = json::parse(fileBytes(known.replace_extension(".expect.json")));
        EXPECT_EQ(found["kind"], expected["kind"]);
        EXPECT_EQ(found["dataset"]["kind"], expected["kind"]);
        EXPECT_EQ(found["volumes"].size(), expected["volumes"].size());
        EXPECT_EQ(found["volumes"][0]["bytes"], std::filesystem::file_size(file));
        for (const json& section : found["sections"]) {
            const auto counted = kCounted.find(section["code"]);
            if (counted == kCounted.end()) continue;
            EXPECT_EQ(section["records"], expected["content"][counted->second]["count"]) << section;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(path("info")));
}

TEST_F(Check, TellsTheFormAndThePlaceWhereAFileEnds) {
    const std::string text = fileBytes(sample("wcr.e00"));
    writeFile(path("cut.e00"), text.substr(0, 20000));
    const json cut = checked("@cut.e00", 1);
    EXPECT_EQ(cut["verdict"], "partial");
    EXPECT_EQ(cut["place"],
              (json{{"file", path("cut.e00")}, {"line", 348}, {"columns", {29, 42}}}));
    EXPECT_EQ(cut["form"], "plain");
    EXPECT_EQ(cut["header"], "EXP  0 wcr.e00");
    EXPECT_EQ(cut["sections"],
              json::parse(R"([{"code":"ARC","precision":"single","lines":0,"records":31}])"));
    EXPECT_EQ(cut["dataset"]["features"]["arc"], 31);
    // At the end of a line, in compressed form, and in a second volume.
    ASSERT_EQ(run({"pack", sample("wcr.e00"), "@p.e00", "--lines-per-volume", "1000"}).status, 0);
    EXPECT_EQ(checked("@p.e00", 0)["form"], "compressed");
    const std::string second = fileBytes(path("p.e01"));
    writeFile(path("p.e01"), second.substr(0, second.find('\n', 5000) + 1));
    std::filesystem::remove(path("p.e02"));
    const json packed = checked("@p.e00", 1);
    EXPECT_EQ(packed["verdict"], "partial");
    EXPECT_EQ(packed["place"]["file"], path("p.e02"));
    // The lines of a later volume alone are no whole file, whatever can be read of them.
    ASSERT_EQ(run({"unpack", sample("wcr.e00"), "@v.e00", "--lines-per-volume", "3000"}).status, 0);
    const json later = checked("@v.e01", 3);
    EXPECT_EQ(later["verdict"], "partial");
    EXPECT_EQ(later["looksLike"], "a later volume: give the first, " + path("v.e00"));
    EXPECT_EQ(run({"import", "@v.e01", "@LATER"}).status, 3);
    // What a non-fatal error was told of is not whole.
    writeFile(path("nxy.e00"), "EXP  0 X\nNXY  2\nEOS\n");
    EXPECT_EQ(checked("@nxy.e00", 3)["verdict"], "partial");
    // For a person, and with the worst status of all.
    const Outcome shown = run({"check", sample("wcr.e00"), "@cut.e00", "@nxy.e00"});
    EXPECT_EQ(shown.status, 1);
    EXPECT_NE(shown.output.find("place    columns 29 to 42 of line 348 of "), std::string::npos)
        << shown.output;
    EXPECT_NE(shown.output.find("ARC   single      2651      296"), std::string::npos);
}

struct NoFile {
    std::string start;
    const char* what;
};

const NoFile kNone[] = {
    {"", "an empty file"},
    {"\x89PNG\r\n\x1a\n\0\0\0\rIHDR"s, "a PNG picture"},
    {"\xff\xd8\xff\xe0\0\x10JFIF"s, "a JPEG picture"},
    {"GIF89a\1\0\1\0"s, "a GIF picture"},
    {"II*\0\x08\0\0\0"s, "a TIFF picture"},
    {"MM\0*\0\0\0\x08"s, "a TIFF picture"},
    {"II+\0\x08\0\0\0"s, "a TIFF picture"},
    {"BM\x3a\0\0\0\0\0"s, "a BMP picture"},
    {"RIFF\x10\0\0\0WEBPVP8 "s, "a WebP picture"},
    {"8BPS\0\1"s, "a layered picture"},
    {"%PDF-1.4\n%\xe2\xe3\xcf\xd3\n", "a PDF document"},
    {"%!PS-Adobe-3.0\n", "a PostScript document"},
    {"{\\rtf1\\ansi", "a text with a word processor's marks"},
    {"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1\0"s, "an old office document"},
    {"7z\xbc\xaf\x27\x1c\0\4"s, "a 7z archive"},
    {"Rar!\x1a\7\0"s, "a RAR archive"},
    {"MSCF\0\0\0\0"s, "a cabinet archive"},
    {"\x22\x10-lh5-\x10\0"s, "an LHA archive"},
    {"\x60\xea\x2b\0\x22\x09"s, "an ARJ archive"},
    {"\x1f\xa0\1\2"s, "a file compressed by an old method"},
    {"\x1f\x1e\1\2"s, "a packed file"},
    {"LZIP\1\x0c"s, "an lzip file"},
    {"\x04\x22\x4d\x18\x64"s, "an LZ4 file"},
    {"070701000A3F", "a cpio archive"},
    {"!<arch>\ndebian-binary", "an archive of libraries or a package"},
    {"begin 644 roads.e00\nM15A0", "a file encoded for mail"},
    {"\xed\xab\xee\xdb\3\0"s, "a package"},
    {"\x7f"
     "ELF\2\1\1"s,
     "a program"},
    {"MZ\x90\0\3"s, "a program"},
    {"SQLite format 3\0\x10"s, "a database"},
    {"\0\0\x27\x0a\0\0"s, "a shape file"},
    {"CDF\1\0\0"s, "an array file"},
    {"\x89HDF\r\n\x1a\n"s, "an array file"},
    {"GRIB\0\0\0\2"s, "a weather file"},
    {"RIFF\x24\0\0\0WAVEfmt "s, "a sound or a film"},
    {"OggS\0\2"s, "a sound or a film"},
    {"ID3\3\0"s, "a sound"},
    {"\0\0\0\x20"
     "ftypisom"s,
     "a film"},
    {"<?xml version=\"1.0\"?>\n<gml/>\n", "an XML text"},
    {"<svg xmlns=\"x\">", "an SVG picture"},
    {"<!DOCTYPE html>\n<html>404</html>\n", "a web page"},
    {"<html><body>404</body></html>", "a web page"},
    {"{\"type\":\"FeatureCollection\"}", "a JSON text"},
    {"[{\"a\":1}]", "a JSON text"},
    {"\xef\xbb\xbf"
     "EXP  0 X\n",
     "an interchange file behind a byte order mark"},
    {"\xff\xfe"
     "E\0X\0P\0"s,
     "a text of two bytes a character"},
    {"QXRECORD\0\0\0\1"s, "a file of an imported dataset"},
    {"Dear sir,\nherewith the roads.\n", "a text"},
    {"x,y\n1,2\n", "a text"},
    {"EXPORTED\nARCHES\n", "a text"},
    {std::string(600, '\x01'), "data of a kind that intake does not know"},
    {"EXP  0 X\nnothing of ours\n", "an interchange file"},
};

TEST_F(Check, AFileThatIsNoneIsToldWithWhatItLooksLike) {
    ASSERT_GE(std::size(kNone), 50U);
    for (const NoFile& none : kNone) {
        writeFile(path("none.txt"), none.start);
        const json found = checked("@none.txt", 1);
        EXPECT_EQ(found["verdict"], "not an interchange file");
        EXPECT_TRUE(found["looksLike"].get<std::string>().starts_with(none.what + ": "s))
            << found << none.what;
        const Outcome refused = run({"import", "--json", "@none.txt", "@DS"});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.object()["looksLike"], none.what);
        // One line of the library, one of ours.
        EXPECT_EQ(std::count(refused.errors.begin(), refused.errors.end(), '\n'), 2)
            << refused.errors;
    }
    EXPECT_FALSE(std::filesystem::exists(path("DS")));
    // What is no file of bytes is not waited for.
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    for (const auto& [file, what] :
         {std::pair{"@pipe", "a pipe: "}, std::pair{"@.", "a folder: "},
          std::pair{"/dev/null", "no file of bytes: "}, std::pair{"@missing", "not there: "}}) {
        EXPECT_TRUE(checked(file, 1)["looksLike"].get<std::string>().starts_with(what)) << what;
    }
}

}  // namespace
}  // namespace intake::testing
