#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>

#include "host/qxbase.h"
#include "stream/compressed.h"
#include "stream/lines.h"
#include "stream/whole_lines.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Reader = ImportTest;

constexpr char kHeader[] = "EXP  0 X";
constexpr char kArc[] = "         1        12         1         2         3         4         2";
constexpr char kVertices[] = " 1.0000000E+00 2.0000000E+00 3.0000000E+00 4.0000000E+00";
constexpr char kWide[] = " 1.00000000000000E+00 2.00000000000000E+00";
constexpr char kWideToo[] = " 3.00000000000000E+00 4.00000000000000E+00";
constexpr char kEnd[] = "        -1         0         0         0         0         0         0";

const std::string kVertexList = "[[1.0,2.0],[3.0,4.0]]";

TEST_F(Reader, EveryDressOfAFileGivesTheSameArc) {
    const std::vector<std::string> plain = {kHeader, "ARC  2", kArc, kVertices, kEnd, "EOS"};
    const std::vector<std::string> bare(plain.begin() + 1, plain.end());
    struct Case {
        const char* what;
        std::vector<std::string> lines;
        std::string lineEnd = "\n";
    };
    std::vector<std::string> padded = plain;
    for (std::string& line : padded) line.resize(80, ' ');
    const Case cases[] = {
        {"plain", plain},
        {"carriage returns", plain, "\r\n"},
        {"carriage returns behind 80 columns", padded, "\r\n"},
        {"no header line", bare},
        {"no header line, carriage returns", bare, "\r\n"},
        {"between sections",
         {kHeader, "", "ARCX 9", "xyz", " ARC 2", "ARC  2", kArc, kVertices, kEnd, "XYZ  2",
          "EOS"}},
        {"long lines are cut",
         {kHeader, "ARC  2" + std::string(400, '9'), kArc,
          kVertices + std::string(24, ' ') + std::string(300000, 'x'), kEnd, "EOS"}},
        // The section says double, its reals say single.
        {"precision pass", {"ARC  3", kArc, kVertices, kEnd, "EOS"}},
        {"precision pass behind other lines",
         {"some line", "ARC  3", kArc, kVertices, kEnd, "EOS"}},
        {"oldest form is wide", {"ARC  1", kArc, kWide, kWideToo, kEnd, "EOS"}},
        {"wide", {kHeader, "ARC  3", kArc, kWide, kWideToo, kEnd, "EOS"}},
        {"no word on its precision", {"ARC  3", kArc, kWide, kWideToo, kEnd, "EOS"}},
    };
    int number = 0;
    for (const Case& each : cases) {
        std::string text;
        for (const std::string& line : each.lines) text += line + each.lineEnd;
        // A last line without its end is a line.
        text.resize(text.size() - each.lineEnd.size());
        given(text);
        const std::string dataset = "DS" + std::to_string(++number);
        EXPECT_EQ(import(dataset), 1) << each.what;
        EXPECT_EQ(complaints(), std::vector<std::string>{}) << each.what;
        const auto arcs = records("arc", dataset);
        ASSERT_EQ(arcs.size(), 1U) << each.what;
        EXPECT_EQ(arcs[0]["vertices"], json::parse(kVertexList)) << each.what;
        const bool isDouble = each.lines[0] == "ARC  3"
                                  ? std::string(each.what) == "no word on its precision"
                                  : std::string(each.what) == "wide";
        EXPECT_EQ(records("dataset", dataset)[0]["precision"], isDouble ? "double" : "single")
            << each.what;
    }
}

TEST_F(Reader, VolumesJoinAtAnyLine) {
    const std::vector<std::string> lines = {kHeader, "ARC  2", kArc, kVertices, kEnd, "EOS"};
    for (std::size_t cut = 1; cut < lines.size(); ++cut) {
        given(std::vector<std::string>(lines.begin(), lines.begin() + static_cast<long>(cut)));
        given("", "in.e01");
        given(std::vector<std::string>(lines.begin() + static_cast<long>(cut), lines.end()),
              "in.e02");
        const std::string dataset = "DS" + std::to_string(cut);
        ASSERT_EQ(import(dataset), 1) << cut;
        EXPECT_EQ(records("arc", dataset)[0]["vertices"], json::parse(kVertexList)) << cut;
        const Message next = {QX_INFORM, "Reading next volume: " + path("in.e01")};
        EXPECT_EQ(std::count(messages().begin(), messages().end(), next), 1);
    }
    // The precision pass goes on into another volume and comes back to the first.
    given(std::string("ARC  3\n"));
    given({kArc, kVertices, kEnd, "EOS"}, "in.e01");
    ASSERT_EQ(import("PASS"), 1);
    EXPECT_EQ(records("arc", "PASS")[0]["vertices"], json::parse(kVertexList));
    // Compressed lines run on as well.
    given(std::string("EXP  1 X\nARC  2~}~ )1~ (12~ )1~ )2~ )3~ )"));
    given(std::string("4~ )2~} ~1+!!!! ~1+5!!! ~1+?!!! ~1+I!!!~}~ (-1~ )0~ )0~ )0~ )0~ )0~ )0~}E"),
          "in.e01");
    given(std::string("OS~}"), "in.e02");
    ASSERT_EQ(import("PACKED"), 1);
    EXPECT_EQ(records("arc", "PACKED").size(), 1U);
}

// Lines of every dress, now and then with a character changed, and for each character of the text
// which of the four lines it is of; the header line goes with the first.
struct Dressed {
    std::string text;
    std::string kinds;
};
Dressed dressedLines(std::mt19937_64& engine, int count) {
    const std::string lines[] = {kArc, kVertices, kWide, "        12       -50        77"};
    const std::string ends[] = {"\n", "\n", "\n", "\r\n", "   \n", "  17.5\n", "\r\r\n", ""};
    const std::string_view letters = " 0+-.Ee/:*\n\r\t\xCF";
    Dressed all;
    all.text = engine() % 2 ? "EXP  0 X\n" : "EXP  0 X\r\n";
    for (int number = 0; number < count; ++number) {
        std::string line = lines[number % 4];
        if (engine() % 4 == 0) line[engine() % line.size()] = letters[engine() % letters.size()];
        if (engine() % 16 == 0) line.resize(engine() % 80, ' ');
        all.text += line + ends[engine() % std::size(ends)];
        all.kinds.resize(all.text.size(), static_cast<char>(number % 4));
    }
    return all;
}

// One of the four, read by its format at once or by way of a buffer.
void readDressed(int kind, bool atOnce, std::array<int32_t, 7>& i, std::array<double, 4>& r) {
    const auto next = [&]<detail::FormatText format>(auto&... values) {
        if (atOnce) return IMPLIN<format>(values...);
        Line line;
        IMPLIN(line);
        read<format>(line, values...);
    };
    switch (kind) {
        case 0:
            return next.operator()<"7I10">(i[0], i[1], i[2], i[3], i[4], i[5], i[6]);
        case 1:
            return next.operator()<"1P,4E14.7">(r[0], r[1], r[2], r[3]);
        case 2:
            return next.operator()<"1P,2E21.14">(r[0], r[1]);
        default:
            return next.operator()<"3I10">(i[0], i[1], i[2]);
    }
}

// All that the lines of a file give and say, and where the file stands behind each. The reading
// tells what it reads from a place on.
template <class Reading>
std::string toldBy(const std::string& file, std::size_t size, Reading reading) {
    std::ostringstream told;
    baseinitC();
    mesink_([](int32_t, const char* text,
               void* user) { *static_cast<std::ostringstream*>(user) << text << '\n'; },
            &told);
    prgset_(
        [](int32_t, const char*, int64_t lines, int64_t bytes, void* user) {
            *static_cast<std::ostringstream*>(user) << "progress " << lines << ' ' << bytes << '\n';
        },
        &told);
    reader = {};
    reader.IMPNAM = Name(file);
    Status status = kSuccess;
    call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    RDVER(reader.IMPUNT);
    int64_t bytes = 0;
    call(abytes_, reader.IMPUNT, bytes);
    while (static_cast<std::size_t>(bytes) < size) {
        try {
            reading(static_cast<std::size_t>(bytes), told);
        } catch (...) {
            told << "failed ";
        }
        call(abytes_, reader.IMPUNT, bytes);
        if (bytes == 0) break;  // the last volume has ended
        told << reader.lineNumber << ' ' << reader.logicalLines << ' ' << bytes << '\n';
    }
    prgset_(nullptr, nullptr);
    mesink_(nullptr, nullptr);
    baseendC();
    reader = {};
    return told.str();
}

std::string toldByFormats(const std::string& file, const std::string& kinds, bool atOnce) {
    return toldBy(file, kinds.size(), [&](std::size_t place, std::ostream& told) {
        std::array<int32_t, 7> integers{};
        std::array<double, 4> reals{};
        readDressed(kinds[place], atOnce, integers, reals);
        for (const int32_t value : integers) told << value << ' ';
        for (const double value : reals) told << std::bit_cast<uint64_t>(value) << ' ';
    });
}

// Whole lines, copied or looked at where they lie, or by way of a buffer.
std::string toldWhole(const std::string& file, std::size_t size, bool atOnce, bool copied) {
    return toldBy(file, size, [&](std::size_t, std::ostream& told) {
        std::array<char, 301> line;
        std::string_view view;
        if (copied) {
            if (!atOnce || !takeWholeLine(line.data())) IMPLIN(std::span(line.data(), 80));
            view = {line.data(), 80};
        } else if (!atOnce || !takeWholeLine(300, view)) {
            IMPLIN(line);
            view = {line.data(), line.size()};
        }
        told << (copied ? view : qx::trimText(view)) << '|';
    });
}

// Vertices in the compressed form, broken into physical lines in one way or another.
std::string packedLines(std::mt19937_64& engine, bool wide, int count) {
    const std::string_view letters = " 0+-~}!|{1@^m)~}\r\n\xFF";
    std::string all;
    for (int number = 0; number < count; ++number) {
        std::string line;
        for (int field = 0; field < (wide ? 2 : 4); ++field) {
            const double size = engine() % 8 == 0 ? 1e20 : 200;
            const double value = std::uniform_real_distribution<double>(-size, size)(engine);
            char text[32];
            std::snprintf(text, sizeof text, wide ? "%21.14E" : "%14.7E",
                          engine() % 8 ? value : 1 / value);
            line += text;
        }
        CompressedLine packed;
        int32_t length = 0;
        CMPLIN(line, 2, packed, length);
        std::string text = std::string(packed.view()) + "~}";
        while (engine() % 4 == 0 && !text.empty()) {
            const std::size_t place = engine() % text.size();
            const std::size_t taken = engine() % 3;
            const std::string put(engine() % 3, letters[engine() % letters.size()]);
            text.replace(place, taken, put);
        }
        all += text;
    }
    std::string file = engine() % 4 ? "EXP  1 X\n" : "EXP  1 X\r\n";
    for (std::size_t start = 0; start < all.size();) {
        // Blanks at the end of a line come again at the start of the next one.
        const std::size_t longest = engine() % 8 == 0 ? engine() % 80 + 1 : 80;
        const std::string piece(qx::trimText(std::string_view(all).substr(start, longest)));
        start += std::max<std::size_t>(piece.size(), 1);
        file += piece + (engine() % 8 ? "\n" : engine() % 2 ? "\r\n" : "  \n");
    }
    return file;
}

TEST_F(Reader, LinesReadWithoutExpandingThemGiveAndSayTheSame) {
    // INTAKE_FIELDS: about how many fields.
    const char* wanted = std::getenv("INTAKE_FIELDS");
    const int files = wanted ? std::atoi(wanted) / 1000 : 400;
    std::mt19937_64 engine(5);
    for (int file = 0; file < files; ++file) {
        const bool wide = file % 2 == 1;
        // Some are longer than a block that is read.
        const std::string text = packedLines(engine, wide, file % 50 < 2 ? 8000 : 300);
        given(text);
        const std::string kinds(text.size(), wide ? '\2' : '\1');
        const std::string name = path("in.e00");
        ASSERT_EQ(toldByFormats(name, kinds, true), toldByFormats(name, kinds, false)) << file;
    }
}

TEST_F(Reader, LinesReadWhereTheyLieGiveAndSayTheSame) {
    std::mt19937_64 engine(3);
    for (int file = 0; file < 40; ++file) {
        // The last ones are longer than a block.
        const auto [text, kinds] = dressedLines(engine, file < 36 ? 300 : 9000);
        given(text);
        const std::string name = path("in.e00");
        EXPECT_EQ(toldByFormats(name, kinds, true), toldByFormats(name, kinds, false)) << file;
        for (const bool copied : {true, false}) {
            EXPECT_TRUE(toldWhole(name, text.size(), true, copied) ==
                        toldWhole(name, text.size(), false, copied))
                << file;
        }
    }
}

TEST_F(Reader, FailuresEndTheImport) {
    struct Case {
        const char* file;
        std::vector<std::string> lines;
        std::vector<std::string> messages;
    };
    const std::string version = "Could not read version number (RDVER)";
    const std::string incompatible =
        "The EXPORT file is not compatable with this version of IMPORT";
    const auto missing = [&](const char* file) {
        return "ERROR, next volume " + path(file) + " does not exist.";
    };
    const Case cases[] = {
        {"in.e00", {}, {version}},
        {"in.e00", {"EXP x0"}, {version}},
        {"in.e00", {"EXP1.5"}, {version}},
        {"in.e00", {kHeader, "no section"}, {missing("in.e01")}},
        {"IN.E09", {kHeader}, {missing("IN.E10")}},
        {"in.e99", {kHeader}, {missing("in.e99")}},
        {"in.txt", {kHeader}, {missing("in.txt")}},
        {"in.e00",
         {kHeader, "ARC"},
         {"This version of your EXPORT file is no longer supported", incompatible}},
        {"in.e00", {kHeader, "ARC  4"}, {incompatible}},
        {"in.e00", {kHeader, "ARC -2"}, {incompatible}},
        {"in.e00",
         {kHeader, "NZ  "},
         {"This version of your EXPORT file is no longer supported", incompatible}},
        {"in.e00",
         {kHeader, "ARC xx"},
         {"Could not read \"xx\" in columns 5 to 6 of line 2 of " + path("in.e00")}},
        // The precision pass found the end; there is nothing behind it.
        {"in.e00", {"EOS"}, {missing("in.e01")}},
        {"open.e00", {kHeader}, {"Could not open " + path("open.e01")}},
    };
    std::filesystem::create_directory(path("open.e01"));
    for (const Case& each : cases) {
        given(each.lines, each.file);
        EXPECT_EQ(import("DS", each.file), 0) << each.file;
        EXPECT_EQ(complaints(), each.messages);
        EXPECT_FALSE(std::filesystem::exists(path("DS")));
    }
}

TEST_F(Reader, AnythingButARegularFileIsNotOpened) {
    std::filesystem::create_directory(path("in.e00"));
    for (const std::string& file : {path("in.e00"), std::string("/dev/zero"), path("none")}) {
        const auto relative = std::filesystem::relative(file, path("")).string();
        EXPECT_EQ(import("DS", relative), 0);
        EXPECT_EQ(messages(), (std::vector<Message>{{QX_ERROR, "Could not open import file.."}}));
    }
}

}  // namespace
}  // namespace intake::testing
