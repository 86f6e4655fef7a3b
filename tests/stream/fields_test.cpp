#include "stream/fields.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>

#include "stream/format.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::optional<double> real(std::string_view field, int decimals = 7, int scale = 1) {
    double value = 0;
    if (!parseReal(field, decimals, scale, value)) return std::nullopt;
    return value;
}

// Equal bit for bit, so that -0.0 is not 0 and NaN is NaN.
bool same(const std::optional<double>& left, const std::optional<double>& right) {
    if (!left || !right) return left.has_value() == right.has_value();
    return std::bit_cast<uint64_t>(*left) == std::bit_cast<uint64_t>(*right) ||
           (std::isnan(*left) && std::isnan(*right));
}

TEST(Fields, IntegersAreSignAndDigitsWithBlanksAnywhere) {
    const struct {
        std::string_view field;
        std::optional<int32_t> value;
    } cases[] = {
        {"          ", 0},
        {"", 0},
        {"        12", 12},
        {"12        ", 12},
        {" 1 2    3 ", 123},
        {"       - 5", -5},
        {"+7", 7},
        {"-2147483648", INT32_MIN},
        {"2147483647", INT32_MAX},
        {"2147483648", {}},
        {"-2147483649", {}},
        {"99999999999999999999", {}},
        {"**********", {}},
        {"1.5", {}},
        {"-", {}},
        {"1-", {}},
        {"--1", {}},
        {"\t1", {}},
        {"00000000000000000012", 12},
    };
    for (const auto& each : cases) {
        int32_t value = -77;
        EXPECT_EQ(parseInteger(each.field, value), each.value.has_value()) << each.field;
        EXPECT_EQ(value, each.value.value_or(-77)) << each.field;
    }
    int16_t narrow = 0;
    EXPECT_FALSE(parseInteger("40000", narrow));
    int64_t wide = 0;
    EXPECT_TRUE(parseInteger("-9223372036854775808", wide));
    EXPECT_EQ(wide, INT64_MIN);
    EXPECT_FALSE(parseInteger("9223372036854775808", wide));
}

TEST(Fields, RealsFollowPointExponentAndScale) {
    const struct {
        std::string_view field;
        std::optional<double> value;
    } cases[] = {
        // An exponent: the number as it stands. None: a tenth of it.
        {" 1.2345678E+03", 1234.5678},
        {"        1.5   ", 0.15},
        {"-1.5", -0.15},
        // No point: the last seven digits are the fraction, with or without an exponent.
        {"15", 0.00000015},
        {"15E7", 15.0},
        {"         1  E 7", 1.0},
        {"1.5e3", 1500},
        {"1.5D3", 1500},
        {"1.5d+3", 1500},
        {"1.5+03", 1500},
        {"1.5-03", 0.0015},
        {"1.E5", 1e5},
        {".5E1", 5},
        {" + 1 . 5 E - 0 3", 0.0015},
        {"", 0.0},
        {"              ", 0.0},
        {"0", 0.0},
        {"-0.0", -0.0},
        {"-0E5", -0.0},
        {"NaN", NAN},
        {"nan", NAN},
        {"Inf", kInfinity},
        {"-INFINITY", -kInfinity},
        {"1E400", kInfinity},
        {"-1.0E999999999", -kInfinity},
        {"1.0E-400", 0.0},
        {"-1.0E-999999999", -0.0},
        {"0.0E999999", 0.0},
        {"4.9406564584124654E-324", 5e-324},
        {"1.E-323", 1e-323},
        {"1.7976931348623157E+308", std::numeric_limits<double>::max()},
        {"2.2250738585072011E-308", 2.2250738585072011e-308},
        // Halfway between two neighbours, and a hair above: rounded once.
        {"9007199254740993.0E0", 9007199254740992.0},
        {"9007199254740993.0000000000000001E0", 9007199254740994.0},
        {"E5", {}},
        {".", {}},
        {"-", {}},
        {"1.5E", {}},
        {"1.5E+", {}},
        {"1..5", {}},
        {"1.5x", {}},
        {"**************", {}},
        {"NaN1", {}},
        {"1,5", {}},
        {"0x10", {}},
        {"infinit", {}},
        {"1.5E3.0", {}},
        {"--1.0", {}},
    };
    for (const auto& each : cases) {
        EXPECT_TRUE(same(real(each.field), each.value)) << '"' << each.field << '"';
    }
    // As wide as a table's field can be, and wider than any.
    EXPECT_EQ(real(std::string(300, '0') + "1.0E0"), 1.0);
    EXPECT_EQ(real("1." + std::string(253, '0') + "E0"), 1.0);
    EXPECT_EQ(real(std::string(600, '1')), std::nullopt);
    EXPECT_EQ(realField("         0         0 ", 1, 14), 0.0);
}

TEST(Fields, LogicalsAreTheirFirstLetter) {
    const std::pair<std::string_view, int> cases[] = {
        {"T", 1}, {"f", 0}, {" ", 0}, {"   .TRUE.", 1}, {"false", 0}, {"1", -1}, {".", -1}};
    for (const auto& [field, expected] : cases) {
        bool value = true;
        const bool read = parseLogical(field, value);
        EXPECT_EQ(read ? int{value} : -1, expected) << field;
    }
}

TEST(Fields, AFormatReadsEachKindAndBlanksBeyondTheLine) {
    int32_t number = -1;
    int16_t small = -1;
    double wide = -1;
    float narrow = -1;
    bool flag = false;
    qx::FixedText<4> name;
    read<"I3,2X,I2,1P,E14.7,E7.2,L1,A4">("  7xx 5 1.0000000E-01   1.23Tab", number, small, wide,
                                         narrow, flag, name);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(small, 5);
    EXPECT_EQ(wide, 0.1);
    EXPECT_EQ(narrow, 0.123F);
    EXPECT_TRUE(flag);
    EXPECT_EQ(name.full(), "ab  ");
    read<"2I10">("         9   1", number, small);
    EXPECT_EQ(small, 1);
    read<"I10,I10">("         9", ignored, number);
    EXPECT_EQ(number, 0);
}

// Fields as the writer makes them, with now and then a character changed.
class SeededFields {
  public:
    // With any exponent, or mostly with one as coordinates have it.
    std::string real(int decimals, bool anyExponent = true) {
        char text[32];
        const double mantissa = std::uniform_real_distribution<double>(-10, 10)(engine_);
        const int furthest = anyExponent || engine_() % 8 == 0 ? 99 : 9;
        const int exponent = std::uniform_int_distribution<int>(-furthest, furthest)(engine_);
        std::snprintf(text, sizeof text, "%*.*f%c%c%02d", decimals + 3, decimals, mantissa, 'E',
                      exponent < 0 ? '-' : '+', std::abs(exponent));
        std::string field(text);
        field.erase(0, field.size() - static_cast<std::size_t>(decimals + 7));
        return changed(field);
    }
    // Digits with a point anywhere, or none.
    std::string fixed(std::size_t width) {
        std::string field = integer(width);
        const std::size_t first = field.find_last_not_of("0123456789") + 1;
        if (first < width && engine_() % 8 != 0) {
            field.insert(first + engine_() % (width - first + 1), ".");
            field.erase(0, 1);
        }
        return field;
    }
    // Of any number of digits, or mostly of as few as most numbers have.
    std::string integer(std::size_t width, bool anyDigits = true) {
        const int fewest = anyDigits ? 0 : 1;
        const int most = anyDigits || engine_() % 8 == 0 ? static_cast<int>(width) : 8;
        const int digits = std::uniform_int_distribution<int>(fewest, most)(engine_);
        std::string field(width - static_cast<std::size_t>(digits), ' ');
        for (int digit = 0; digit < digits; ++digit) field += below("0123456789");
        if (digits > 1 && engine_() % 2 == 0) {
            field[width - static_cast<std::size_t>(digits)] = '-';
        }
        return changed(field);
    }

  private:
    char below(std::string_view letters) {
        return letters[std::uniform_int_distribution<std::size_t>(0, letters.size() - 1)(engine_)];
    }
    std::string changed(std::string field) {
        if (engine_() % 4 == 0) {
            field[engine_() % field.size()] = below(" 0+-.EeDd/:*!@?\t\n\r\x10\x1D\xB0\xCF\xFF");
        }
        return field;
    }
    std::mt19937_64 engine_{20240521};
};

template <std::size_t width>
int compareIntegers(SeededFields& fields, int count) {
    int taken = 0;
    for (; count > 0; --count) {
        const std::string field = fields.integer(width);
        int32_t quick = 0;
        int32_t careful = 0;
        if (!fast::readInteger<width>(field.data(), quick)) continue;
        ++taken;
        const bool read = parseInteger(field, careful);
        EXPECT_TRUE(read && quick == careful) << '"' << field << '"';
        if (!read || quick != careful) return 0;
    }
    return taken;
}

template <int decimals>
int compareReals(SeededFields& fields, int count) {
    const auto quickly = decimals == 17 ? fast::readLongReal : fast::readReal<decimals % 17>;
    int taken = 0;
    for (; count > 0; --count) {
        const std::string field = fields.real(decimals);
        double quick = 0;
        if (!quickly(field.data(), quick)) continue;
        ++taken;
        const bool equal = same(quick, real(field, decimals));
        EXPECT_TRUE(equal) << '"' << field << '"';
        if (!equal) return 0;
    }
    return taken;
}

int compareFixed(SeededFields& fields, std::size_t width, int count) {
    int taken = 0;
    for (; count > 0; --count) {
        const std::string field = fields.fixed(width);
        const int decimals = count % 20;
        const int scale = count % 2;
        double quick = 0;
        if (!fast::readFixed(field, decimals, scale, quick)) continue;
        ++taken;
        const bool equal = same(quick, real(field, decimals, scale));
        EXPECT_TRUE(equal) << '"' << field << "\" with " << decimals << " decimals";
        if (!equal) return 0;
    }
    return taken;
}

// Halfway between two doubles, and as near to it as nineteen digits come.
TEST(FastFields, LeaveWhatTheyCannotRoundToTheCarefulWay) {
    std::mt19937_64 engine(7);
    for (int count = 0; count < 20000; ++count) {
        const uint64_t half = (engine() >> 11 | uint64_t{1} << 52) * 2 + 1;
        const std::string whole = std::to_string(half);
        for (const std::string& field :
             {whole + '.', whole + ".01", std::to_string(half - 1) + ".99",
              whole.substr(0, 3) + '.' + whole.substr(3)}) {
            double quick = 0;
            if (!fast::readFixed(field, 0, 0, quick)) continue;
            ASSERT_TRUE(same(quick, real(field, 0, 0))) << field;
        }
        char text[32];
        std::snprintf(text, sizeof text, "%24.17E", static_cast<double>(half / 2) * 0.1);
        double quick = 0;
        ASSERT_TRUE(!fast::readLongReal(text, quick) || same(quick, real(text, 17))) << text;
    }
}

TEST(FastFields, GiveTheCarefulValueBitForBit) {
    // INTAKE_FIELDS: how many of each.
    const char* wanted = std::getenv("INTAKE_FIELDS");
    const int count = wanted ? std::atoi(wanted) : 300000;
    SeededFields fields;
    EXPECT_GT(compareReals<7>(fields, count), count / 2);
    EXPECT_GT(compareReals<14>(fields, count), count / 2);
    EXPECT_GT(compareReals<17>(fields, count), count / 2);
    EXPECT_GT(compareFixed(fields, 12, count), count / 3);
    EXPECT_GT(compareFixed(fields, 24, count), count / 4);
    EXPECT_GT(compareIntegers<14>(fields, count), count / 4);
    EXPECT_GT(compareIntegers<10>(fields, count), count / 2);
    EXPECT_GT(compareIntegers<11>(fields, count), count / 3);
    EXPECT_GT(compareIntegers<8>(fields, count), count / 2);
    EXPECT_GT(compareIntegers<5>(fields, count), count / 2);
    EXPECT_GT(compareIntegers<1>(fields, count), count / 4);
}

// Runs of fields side by side, read several at a time. How many runs were.
template <std::size_t count, class T, class Make, class Quick, class Careful>
int compareRuns(int runs, Make make, Quick quick, Careful careful) {
    int taken = 0;
    for (; runs > 0; --runs) {
        std::array<std::string, count> fields;
        std::string text;
        for (std::string& field : fields) text += field = make();
        std::array<T, count> values;
        // A line end and one more character lie behind.
        if (!quick((text + "\n7").data(), values.data())) continue;
        ++taken;
        for (std::size_t index = 0; index < count; ++index) {
            const bool equal = same(values[index], careful(fields[index]));
            EXPECT_TRUE(equal) << '"' << text << "\", field " << index;
            if (!equal) return 0;
        }
    }
    return taken;
}

template <std::size_t width, std::size_t count>
int compareIntegerRuns(SeededFields& fields, int runs) {
    return compareRuns<count, int32_t>(
        runs, [&] { return fields.integer(width, false); }, fast::readIntegers<width, count>,
        [](std::string_view field) -> std::optional<double> {
            int32_t value = 0;
            if (!parseInteger(field, value)) return std::nullopt;
            return value;
        });
}

template <int decimals, std::size_t count>
int compareRealRuns(SeededFields& fields, int runs) {
    return compareRuns<count, double>(
        runs, [&] { return fields.real(decimals, false); }, fast::readReals<decimals, count>,
        [](std::string_view field) { return real(field, decimals); });
}

TEST(FastFields, InRunsGiveTheCarefulValuesBitForBit) {
    const char* wanted = std::getenv("INTAKE_FIELDS");
    const int count = wanted ? std::atoi(wanted) : 60000;
    SeededFields fields;
    // Three quarters of the fields are sound.
    EXPECT_GT((compareRealRuns<7, 4>(fields, count)), count / 4);
    EXPECT_GT((compareRealRuns<7, 5>(fields, count)), count / 5);
    EXPECT_GT((compareRealRuns<14, 2>(fields, count)), count / 2);
    EXPECT_GT((compareRealRuns<14, 3>(fields, count)), count / 3);
    EXPECT_GT((compareIntegerRuns<14, 5>(fields, count)), count / 8);
    EXPECT_GT((compareIntegerRuns<10, 7>(fields, count)), count / 16);
    EXPECT_GT((compareIntegerRuns<10, 2>(fields, count)), count / 3);
}

}  // namespace
}  // namespace intake::testing
