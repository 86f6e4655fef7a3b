// Numeric fields against the formatted reads of a Fortran compiler, where there is one.
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>

#include "stream/fields.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

constexpr char kProgram[] = R"(program fields
character(32) :: line
real(8) :: a
integer(4) :: n
integer :: kind, status
do
  read (*, '(I1,A32)', iostat=status) kind, line
  if (status /= 0) exit
  a = 0
  n = 0
  select case (kind)
  case (1)
    read (line, '(1P,E14.7)', iostat=status) a
  case (2)
    read (line, '(1P,E24.17)', iostat=status) a
  case (3)
    read (line, '(F12. 4)', iostat=status) a
  case (4)
    read (line, '(I11)', iostat=status) n
    a = n
  case (5)
    read (line, '(1P,E32.7)', iostat=status) a
  end select
  if (status /= 0) then
    write (*, '(A)') 'failed'
  else
    write (*, '(Z16.16)') transfer(a, 0_8)
  end if
end do
end program
)";

struct Shape {
    std::size_t width;
    int decimals;
    int scale;
};
constexpr Shape kShapes[] = {{14, 7, 1}, {24, 17, 1}, {12, 4, 0}, {11, 0, 0}, {32, 7, 1}};

constexpr std::size_t kInteger = 3;
constexpr std::size_t kWide = 4;
constexpr const char* kOddForms[] = {" 1.2345678E+03",
                                     "1.5",
                                     "15",
                                     "15E7",
                                     "1.5D-3",
                                     "1.5d3",
                                     "1.5+03",
                                     "1.5-3",
                                     "-0.0",
                                     " + 1 . 5 E - 0 3",
                                     "1.E5",
                                     ".5E1",
                                     "NaN",
                                     "Inf",
                                     "-Infinity",
                                     "1.5E",
                                     "x",
                                     "1..5",
                                     "1.5E3.0",
                                     "1.0E-400",
                                     "4.9406564584124654E-324",
                                     "9007199254740993.0E0",
                                     "1 2 3",
                                     "",
                                     "0",
                                     "1.5E+308",
                                     "2.2250738585072011E-308",
                                     "123456789012345678901234567890"};

TEST(FortranFields, AreReadAlike) {
    const Workspace workspace;
    writeFile(workspace.path("fields.f90"), kProgram);
    const std::string program = workspace.path("fields");
    if (std::system(("gfortran -o " + program + " " + program + ".f90 2>/dev/null").c_str()) != 0) {
        GTEST_SKIP() << "no Fortran compiler";
    }
    std::mt19937 random(20181);
    const auto below = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    std::string input;
    std::vector<std::pair<std::size_t, std::string>> fields;
    const auto add = [&](std::size_t kind, std::string text) {
        text.resize(kShapes[kind].width, ' ');
        input += std::to_string(kind + 1) + text + std::string(32 - text.size(), ' ') + "\n";
        fields.emplace_back(kind, std::move(text));
    };
    for (const char* each : kOddForms) add(kWide, each);
    for (int count = 0; count < 4000; ++count) {
        const auto kind = static_cast<std::size_t>(below(4));
        const bool real = kind < 3;
        const std::size_t room = kShapes[kind].width - 1;
        std::string text = below(2) ? "-" : below(4) ? "" : "+";
        const int exponentForm = real ? below(4) : 0;
        const std::size_t digits = real ? 1 + random() % (room - 6) : 1 + random() % 9;
        for (std::size_t each = 0; each < digits; ++each)
            text += static_cast<char>('0' + below(10));
        if (real && below(3)) text.insert(text.size() - random() % digits, ".");
        const char* forms[] = {"", "E", "D", ""};
        if (exponentForm != 0) {
            text += forms[exponentForm];
            text += below(2) ? "-" : "+";
            text += std::to_string(below(20));
        }
        // Blanks before, behind and inside count for nothing.
        while (text.size() < kShapes[kind].width && below(3)) {
            text.insert(random() % (text.size() + 1), " ");
        }
        add(kind, text);
    }
    writeFile(workspace.path("in"), input);
    ASSERT_EQ(std::system(
                  (program + " < " + workspace.path("in") + " > " + workspace.path("out")).c_str()),
              0);
    std::istringstream answers(fileBytes(workspace.path("out")));
    for (const auto& [kind, text] : fields) {
        std::string answer;
        answers >> answer;
        double value = 0;
        int32_t integer = 0;
        const Shape& shape = kShapes[kind];
        const bool read = kind == kInteger ? parseInteger(text, integer)
                                           : parseReal(text, shape.decimals, shape.scale, value);
        ASSERT_EQ(read, answer != "failed") << text;
        if (kind == kInteger) value = integer;
        const auto expected = std::bit_cast<double>(std::strtoull(answer.c_str(), nullptr, 16));
        const bool same = std::bit_cast<uint64_t>(value) == std::bit_cast<uint64_t>(expected);
        EXPECT_TRUE(!read || same || (std::isnan(value) && std::isnan(expected))) << text;
    }
}

}  // namespace
}  // namespace intake::testing
