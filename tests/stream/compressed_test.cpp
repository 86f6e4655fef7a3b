#include "stream/compressed.h"

#include <gtest/gtest.h>

#include <random>

#include "host/qxbase.h"
#include "stream/reader.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

std::string expanded(std::string_view text, std::size_t length = 80) {
    std::string line(length, '?');
    int32_t count = 0;
    DCMLIN(text, line, count);
    EXPECT_EQ(line.find_first_not_of(' ', static_cast<std::size_t>(count)), line.npos) << text;
    return line.substr(0, static_cast<std::size_t>(count));
}

std::string compressed(std::string_view text, int32_t level) {
    CompressedLine work;
    int32_t count = 0;
    CMPLIN(text, level, work, count);
    return std::string(work.full().substr(0, static_cast<std::size_t>(count)));
}

// The decoding as it is described, step for step on the text as it stands: padding digit, point and
// exponent of a damaged number meet what is in front of it.
std::string expandedByTheBook(std::string_view s) {
    std::string out;
    std::size_t i = 0;
    const auto code = [&] { return i < s.size() ? static_cast<unsigned char>(s[i]) : -1; };
    while (i < s.size()) {
        if (code() != '~') {
            out += s[i++];
            continue;
        }
        ++i;
        if (code() < 33 || code() > 123) {
            if (code() == ' ') {
                ++i;
                out.append(static_cast<std::size_t>(std::max(code() - 32, 0)), ' ');
                ++i;
            } else if (code() == '~') {
                out += s[i++];
            } else if (code() >= 0) {
                out += s[i++];
            }
            continue;
        }
        const std::size_t start = out.size();
        int h = code() - 33;
        ++i;
        while (i < s.size() && code() != ' ' && code() != '~') {
            int v = code() - 33;
            ++i;
            if (v == 92) {
                if (i == s.size()) break;
                v = code() + 59;
                ++i;
            }
            out += static_cast<char>('0' + v / 10);
            out += static_cast<char>('0' + v % 10);
        }
        if (h >= 45) {
            h -= 45;
            if (!out.empty()) out.pop_back();
        }
        const auto r = static_cast<std::size_t>(h % 15);
        if (r != 0) out.insert(std::min(start + r, out.size()), ".");
        if (h >= 15) {
            out.insert(out.size() - std::min<std::size_t>(2, out.size()), h < 30 ? "E+" : "E-");
        }
        if (code() == '~' && i + 1 < s.size() && s[i + 1] != ' ') ++i;
    }
    return out;
}

// Random characters, and the text of a whole line with some of its characters changed, lost or
// doubled. INTAKE_STREAMS says how many.
TEST(CompressedForm, ExpandsAnyTextByTheBook) {
    const char* wanted = std::getenv("INTAKE_STREAMS");
    const int rounds = wanted ? std::atoi(wanted) : 50000;
    std::mt19937 engine(20181123);
    constexpr std::string_view kLetters = "~~~~ }}1-CYo$@P^N!\"|{z\x1F\x7F\xFE";
    const std::string whole = compressed(
        "        12  1.2345678E+03-9.9999999E-99 ~}   x 99.5 1234567 123456.75  1.25E+10 0000 "
        "-1.23456789012345E+05 1234567.125    1E-05",
        2);
    for (int round = 0; round < rounds; ++round) {
        std::string text(engine() % (round % 64 == 0 ? 303 : 60), ' ');
        for (char& each : text) each = kLetters[engine() % kLetters.size()];
        if (round % 2 == 0) {
            text = whole;
            for (std::size_t changes = 1 + engine() % 6; changes > 0; --changes) {
                const std::size_t place = engine() % text.size();
                if (engine() % 3 == 0) {
                    text.erase(place, 1);
                } else if (engine() % 2 == 0) {
                    text[place] = kLetters[engine() % kLetters.size()];
                } else {
                    text.insert(place, text, engine() % text.size(), 1 + engine() % 4);
                }
            }
        }
        text = qx::trimText(text);
        const std::string decoded = expandedByTheBook(text);
        for (const std::size_t length : {80U, 300U}) {
            ASSERT_EQ(expanded(text, length), decoded.substr(0, length)) << text;
        }
    }
}

TEST(CompressedForm, PacksAndExpandsAsWritten) {
    const struct {
        std::string text;
        std::string packed;
    } cases[] = {
        {"         1         2        -1", "~ )1~ )2~ (-1"},
        {"  1.2345678E+03  2.5000000E+01", "  ~1-CYo$  ~1:!!!\""},
        {"1.0000000E+00", "~1+!!!!"},
        {"12.5", "~P-S"},
        {"99.5 100", "99.5 100"},
        {"a~b 12 ~ 3", "a~~b 12 ~~ 3"},
        // A token that would be longer than its text is not written; one of the same length is.
        {"0", "0"},
        {"00", "00"},
        {"12.5 ", "~P-S"},
        {"0000", "~!!!"},
        {"12.5~", "12.5~~"},
        {"1234567   8", "~N-CYg~ #8"},
        // The point after 15 digits is none of the token's.
        {"123456789012345.6", "~N-CYo{-CS~.6"},
        {"1.2345678E+03}", "~1-CYo$~}"},
        {"1.2345678E+003", "~\"-CYo~E+003"},
        {"9.9999999E-99", "~@}(}(}(}(}("},
        {std::string(60, ' ') + "x", "~ Z  x"},
        {"  x", "  x"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(compressed(each.text, 2), each.packed) << each.text;
        const std::string trimmed(qx::trimText(each.text));
        EXPECT_EQ(expanded(each.packed), trimmed) << each.packed;
        EXPECT_EQ(expanded(compressed(each.text, 1)), trimmed);
    }
    EXPECT_EQ(compressed("   1.0000000E+00", 1), "~ #1.0000000E+00");
    EXPECT_EQ(compressed(std::string(80, ' '), 2), "");
}

TEST(CompressedForm, TakesAnyTextAndStaysInTheLine) {
    const struct {
        std::string text;
        std::string expanded;
    } cases[] = {
        {"~", ""},
        {"a~", "a"},
        {"a~ ", "a"},
        {"~ \x1F"
         "b",
         "b"},
        {"~\x7F"
         "b",
         "\x7F"
         "b"},
        {"~|x", "|x"},
        {"~}x", "}x"},
        {"~\xE9", "\xE9"},
        {"~!", ""},
        {"~N", ""},
        {"a~N", ""},
        {"1E5-C~~~z", "1E5-E-C."},
        {"~ Z~ Z~N~N~N~!-~/-", std::string(80, ' ')},
        {"~!!", "00"},
        {"~N!", "0"},
        {"~!}", ""},
        {"~!}!", "92"},
        // A point beyond the digits goes to the end; an exponent stands before the last two
        // characters.
        {"~/-", "12."},
        {"~0", "E+"},
        {"~0-", "E+12"},
        {"~]-", "E+1"},
        {"x~]", "E+"},
        {"~^", "E+."},
        {"~1-", "1E+.2"},
        // The "~" behind a number is its own, unless a run of blanks begins there.
        {"~!-~x", "12x"},
        {"~!-~~~", "12~"},
        {"~!-~ #x", "12   x"},
        {"~!-~", "12"},
        {"~!}}", "B4"},
    };
    for (const auto& each : cases) EXPECT_EQ(expanded(each.text), each.expanded) << each.text;
    EXPECT_EQ(expanded("abcdef", 3), "abc");
    EXPECT_EQ(expanded("~ Z~ Zx", 80), std::string(80, ' ').substr(0, 80));
    EXPECT_EQ(expanded(std::string(302, '~') + "tail", 300).size(), 151U);
}

TEST(CompressedForm, RandomTextsComeBackAndRandomBytesDoNoHarm) {
    std::mt19937_64 engine(7);
    const std::string_view letters = "0123456789012345...E+-  ~~}}aZ    ";
    for (int count = 0; count < 20000; ++count) {
        std::string text(engine() % 81, ' ');
        for (char& each : text) each = letters[engine() % letters.size()];
        const std::string trimmed(qx::trimText(text));
        const std::string once = expanded(compressed(text, 1));
        EXPECT_EQ(once, trimmed);
        EXPECT_EQ(expanded(compressed(text, 2)), trimmed);
        std::string bytes(engine() % 303, ' ');
        for (char& each : bytes) each = static_cast<char>(engine() % (count % 2 ? 256 : 8) + 120);
        EXPECT_LE(expanded(bytes, 300).size(), 300U);
    }
}

class Written : public ::testing::Test {
  protected:
    void write(int32_t level, int32_t linesPerVolume, const std::vector<std::string>& lines) {
        reader = {};
        reader.IMPNAM.assign(path());
        reader.EXPCMP = level;
        reader.EXPVER = level == 0 ? 0 : 1;
        reader.VOLMAX = linesPerVolume;
        for (const std::string& line : lines) EXPLIN(line);
        EXPFLS();
        aclose_(&reader.IMPUNT);
    }
    std::vector<std::string> readBack(std::size_t count, std::size_t length) {
        reader = {};
        reader.IMPNAM.assign(path());
        reader.firstVolume = reader.IMPNAM;
        Status status = kSuccess;
        call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
        RDVER(reader.IMPUNT);
        std::vector<std::string> lines;
        for (; count > 0; --count) {
            std::string line(length, '?');
            IMPLIN(line);
            lines.emplace_back(qx::trimText(line));
        }
        aclose_(&reader.IMPUNT);
        return lines;
    }
    std::string path(const std::string& tail = "e00") { return workspace_.path("out." + tail); }
    ~Written() override {
        baseinitC();
        reader = {};
    }
    Workspace workspace_;
};

TEST_F(Written, LinesComeBackThroughEveryLevelAndVolume) {
    mesink_([](int32_t, const char*, void*) {}, nullptr);
    std::mt19937_64 engine(11);
    const std::string_view letters = "0123456789.E+ -     ~x";
    std::vector<std::string> lines;
    for (int count = 0; count < 3000; ++count) {
        std::string text(engine() % 81, ' ');
        for (char& each : text) each = letters[engine() % letters.size()];
        lines.emplace_back(qx::trimText(text));
    }
    for (const int32_t level : {0, 1, 2}) {
        for (const int32_t volume : {0, 1000}) {
            for (int digit = 1; digit < 5; ++digit) {
                std::filesystem::remove(path("e0" + std::to_string(digit)));
            }
            write(level, volume, lines);
            EXPECT_EQ(std::filesystem::exists(path("e01")), volume != 0);
            EXPECT_EQ(readBack(lines.size(), 80), lines) << level << ' ' << volume;
        }
    }
    mesink_(nullptr, nullptr);
}

TEST_F(Written, LongLogicalLinesKeepTheirOwnEnd) {
    // 299 characters and the mark fit; from 300 on the mark stays, and the next line is untouched.
    for (const std::size_t length : {299U, 300U, 301U, 400U}) {
        const std::string text(length, 'a');
        std::string file = "EXP  1 X\n";
        const std::string all = text + "~}b~}";
        for (std::size_t at = 0; at < all.size(); at += 80) file += all.substr(at, 80) + "\n   \n";
        writeFile(path(), file);
        const auto lines = readBack(2, 310);
        const std::string kept = length == 299 ? text
                                 : length == 300
                                     ? text + "}"
                                     : text.substr(0, std::min<std::size_t>(length, 302));
        EXPECT_EQ(lines[0], kept) << length;
        EXPECT_EQ(lines[1], "b") << length;
    }
}

TEST_F(Written, AnEndMarkMayStraddleAndDataBracesDoNot) {
    const std::string filler(79, 'a');
    writeFile(path(), "EXP  1 X\n" + filler + "~\n}b~~}c~~~}~}" + "d~}\n\n  ~}\ne  ~}");
    EXPECT_EQ(readBack(6, 100), (std::vector<std::string>{filler, "b~}c~", "", "d", "", "e"}));
}

TEST_F(Written, FailuresAreFatal) {
    std::vector<std::string> messages;
    mesink_(
        [](int32_t level, const char* text, void* user) {
            if (level >= QX_WARN) static_cast<std::vector<std::string>*>(user)->emplace_back(text);
        },
        &messages);
    writeFile(path("e01"), "");
    EXPECT_ANY_THROW(write(0, 2, {"a", "b", "c", "d"}));
    reader = {};
    reader.IMPNAM.assign(workspace_.path("none/out.e00"));
    EXPECT_ANY_THROW(EXPLIN(std::string("a")));
    mesink_(nullptr, nullptr);
    EXPECT_EQ(messages,
              (std::vector<std::string>{"ERROR: Next volume " + path("e01") + " already exists.",
                                        "Error Creating " + workspace_.path("none/out.e00")}));
}

}  // namespace
}  // namespace intake::testing
