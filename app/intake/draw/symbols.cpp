// A symbol set: a sheet with a line a symbol. What most words of its records mean is not known, so
// the sheet is a table of them. Sets that keep a plain colour number, shades of 52 bytes and texts
// of 44, have a specimen in that colour too.
#include "datasets/symbol_sets.h"

#include <array>
#include <charconv>
#include <optional>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/utf8.h"

namespace program {

namespace {

using datasets::SetLayout;
using datasets::WordRecord;
using datasets::WordRun;

constexpr double kText = 11;
constexpr double kLine = 18;
constexpr double kGap = 12;
constexpr double kSpecimen = 40;
constexpr Colour kRule = {200, 200, 200};
// As many as there are numbers in a sound set; pictures of more grow too large to look at.
constexpr std::size_t kMostSymbols = datasets::kHighestSymbol;

struct ColourWord {
    std::string_view kind;
    int32_t recordBytes;
    std::size_t word;  // from 0
    bool isText;
};
constexpr ColourWord kColourWords[] = {
    {"Shadeset File", 52, 4, false},
    {"Textset File", 44, 2, true},
};

const ColourWord* colourWordOf(std::string_view kind, int32_t recordBytes) {
    for (const ColourWord& each : kColourWords) {
        if (each.kind == kind && each.recordBytes == recordBytes) return &each;
    }
    return nullptr;
}

struct Row {
    std::vector<std::string> cells;
    std::optional<int32_t> colour;  // of its specimen
};

struct Sheet {
    std::string title;
    std::string more;       // what did not find room
    std::vector<Row> rows;  // the heads of the columns first
    std::vector<double> widths;
    const ColourWord* colourWord = nullptr;
};

std::string plain(float value) {
    std::array<char, 32> digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                         std::chars_format::general, 6)
                               .ptr};
}

std::string nameIn(const WordRecord& record, std::size_t word) {
    const std::string name = record.name(word);
    const std::size_t last = name.find_last_not_of(std::string_view(" \0", 2));
    return last == name.npos ? std::string() : toUtf8(name.substr(0, last + 1));
}

Row headsOf(const SetLayout& layout) {
    Row row;
    std::size_t word = 0;
    for (const WordRun& run : layout.words) {
        if (run.kind == 'n') {
            row.cells.emplace_back("name");
            word += datasets::kNameWords;
            continue;
        }
        for (int each = 0; each < run.count; ++each) {
            row.cells.push_back(word == 0 ? "symbol" : "word " + std::to_string(word + 1));
            ++word;
        }
    }
    return row;
}

Row rowOf(const WordRecord& record, const SetLayout& layout, const ColourWord* colour) {
    Row row;
    std::size_t word = 0;
    for (const WordRun& run : layout.words) {
        if (run.kind == 'n') {
            row.cells.push_back(nameIn(record, word));
            word += datasets::kNameWords;
            continue;
        }
        for (int each = 0; each < run.count; ++each, ++word) {
            row.cells.push_back(run.kind == 'r' ? plain(record.real(word))
                                                : std::to_string(record.words[word]));
        }
    }
    if (colour) row.colour = record.words[colour->word];
    return row;
}

Sheet sheetOf(const Dataset& dataset) {
    Sheet sheet;
    const SetLayout layout = datasets::layoutOfSet(dataset.path, dataset.kind);
    sheet.title = toUtf8(dataset.name) + ": " + dataset.kind + ", records of " +
                  std::to_string(layout.recordBytes) + " bytes";
    if (layout.recordBytes == 0) return sheet;
    sheet.colourWord = colourWordOf(dataset.kind, layout.recordBytes);
    sheet.rows.push_back(headsOf(layout));
    auto symbols = datasets::symbols(dataset.path, layout);
    for (const WordRecord& record : symbols) {
        if (sheet.rows.size() > kMostSymbols) {
            sheet.more = "and more, of " + std::to_string(symbols.count());
            break;
        }
        sheet.rows.push_back(rowOf(record, layout, sheet.colourWord));
    }
    sheet.widths.resize(sheet.rows.front().cells.size());
    for (const Row& row : sheet.rows) {
        for (std::size_t cell = 0; cell < row.cells.size(); ++cell) {
            sheet.widths[cell] = std::max(sheet.widths[cell], widthOf(row.cells[cell], kText));
        }
    }
    return sheet;
}

void drawSpecimen(Canvas& canvas, const Sheet& sheet, const Row& row, double baseline) {
    if (!row.colour) return;
    const Colour colour = lineColour(*row.colour);
    if (sheet.colourWord->isText) {
        canvas.text({View::kMargin, baseline}, kText + 2, 0, "Abc 1", colour);
        return;
    }
    const double top = baseline - kText;
    const double right = View::kMargin + kSpecimen - 4;
    const std::array<Place, 4> box = {Place{View::kMargin, top}, Place{right, top},
                                      Place{right, top + kLine - 4},
                                      Place{View::kMargin, top + kLine - 4}};
    canvas.area(box, colour);
}

void drawSheet(Canvas& canvas, const Sheet& sheet, double width) {
    double baseline = View::kMargin + kText;
    canvas.text({View::kMargin, baseline}, kText + 2, 0, sheet.title, kInk);
    for (const Row& row : sheet.rows) {
        const std::array<Place, 2> rule = {Place{View::kMargin, baseline + 6},
                                           Place{width - View::kMargin, baseline + 6}};
        canvas.line(rule, kRule, 0.5);
        baseline += kLine;
        drawSpecimen(canvas, sheet, row, baseline);
        double x = View::kMargin + (sheet.colourWord ? kSpecimen + kGap : 0);
        for (std::size_t cell = 0; cell < row.cells.size(); ++cell) {
            if (!row.cells[cell].empty())
                canvas.text({x, baseline}, kText, 0, row.cells[cell], kInk);
            x += sheet.widths[cell] + kGap;
        }
    }
    if (!sheet.more.empty()) {
        canvas.text({View::kMargin, baseline + kLine}, kText, 0, sheet.more, kInk);
    }
}

}  // namespace

Picture pictureOfSymbolSet(const Dataset& dataset) {
    const auto sheet = std::make_shared<const Sheet>(sheetOf(dataset));
    double width = sheet->colourWord ? kSpecimen + kGap : 0;
    for (const double each : sheet->widths) width += each + kGap;
    Picture picture;
    picture.pageWidth = std::max(width, widthOf(sheet->title, kText + 2)) + 2 * View::kMargin;
    picture.pageHeight = kLine * static_cast<double>(sheet->rows.size() + 2) + View::kMargin;
    picture.draw = [sheet, page = picture.pageWidth](Canvas& canvas, const View&) {
        drawSheet(canvas, *sheet, page);
    };
    return picture;
}

}  // namespace program
