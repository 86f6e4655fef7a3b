#include "app/intake/looks_like.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "containers/magic.h"

namespace program {

namespace {

using namespace std::string_view_literals;
namespace fs = std::filesystem;

constexpr const char kNothing[] = "there is nothing in it to import";
constexpr const char kUnpack[] = "unpack it, and give the file that is in it";
constexpr const char kWebPage[] = "a download may have ended at a page instead of the file";
constexpr const char kOtherReader[] = "it holds data of another format, which intake does not read";
constexpr const char kAsText[] = "save it as plain text of one byte a character first";
constexpr const char kStored[] = "give `intake show` the path of the dataset it belongs to";
constexpr const char kUnknown[] = "an interchange file is a text that begins with EXP";

struct Magic {
    std::size_t at;
    std::string_view bytes;
    const char* what;
    const char* advice;
};

// The first that fits counts.
constexpr Magic kTable[] = {
    {0, "\x89PNG\r\n\x1a\n"sv, "a PNG picture", kNothing},
    {0, "\xff\xd8\xff"sv, "a JPEG picture", kNothing},
    {0, "GIF8"sv, "a GIF picture", kNothing},
    {0, "II*\0"sv, "a TIFF picture", kNothing},
    {0, "MM\0*"sv, "a TIFF picture", kNothing},
    {0, "II+\0"sv, "a TIFF picture", kNothing},
    {0, "BM"sv, "a BMP picture", kNothing},
    {8, "WEBP"sv, "a WebP picture", kNothing},
    {0, "8BPS"sv, "a layered picture", kNothing},
    {0, "QXRECORD"sv, "a file of an imported dataset", kStored},
    {0, "%PDF-"sv, "a PDF document", kNothing},
    {0, "%!PS"sv, "a PostScript document", kNothing},
    {0, "{\\rtf"sv, "a text with a word processor's marks", kAsText},
    {0, "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"sv, "an old office document", kNothing},
    {0, "7z\xbc\xaf\x27\x1c"sv, "a 7z archive", kUnpack},
    {0, "Rar!"sv, "a RAR archive", kUnpack},
    {0, "MSCF"sv, "a cabinet archive", kUnpack},
    {2, "-lh"sv, "an LHA archive", kUnpack},
    {0, "\x60\xea"sv, "an ARJ archive", kUnpack},
    {0, "\x1f\xa0"sv, "a file compressed by an old method", kUnpack},
    {0, "\x1f\x9e"sv, "a file compressed by an old method", kUnpack},
    {0, "\x1f\x1e"sv, "a packed file", kUnpack},
    {0, "LZIP"sv, "an lzip file", kUnpack},
    {0, "\x04\x22\x4d\x18"sv, "an LZ4 file", kUnpack},
    {0, "070701"sv, "a cpio archive", kUnpack},
    {0, "070707"sv, "a cpio archive", kUnpack},
    {0, "!<arch>\n"sv, "an archive of libraries or a package", kNothing},
    {0, "#!/bin/sh\n# This is a shell archive"sv, "a shell archive", kUnpack},
    {0, "begin "sv, "a file encoded for mail", "decode it first (uudecode)"},
    {0, "\xed\xab\xee\xdb"sv, "a package", kNothing},
    {0,
     "\x7f"
     "ELF"sv,
     "a program", kNothing},
    {0, "MZ"sv, "a program", "if it unpacks itself, run it where it was made for"},
    {0, "SQLite format 3\0"sv, "a database", kOtherReader},
    {0, "\0\0\x27\x0a"sv, "a shape file", kOtherReader},
    {0, "CDF\x01"sv, "an array file", kOtherReader},
    {0, "\x89HDF\r\n\x1a\n"sv, "an array file", kOtherReader},
    {0, "GRIB"sv, "a weather file", kOtherReader},
    {0, "RIFF"sv, "a sound or a film", kNothing},
    {0, "OggS"sv, "a sound or a film", kNothing},
    {0, "ID3"sv, "a sound", kNothing},
    {4, "ftyp"sv, "a film", kNothing},
    {0, "<?xml"sv, "an XML text", kOtherReader},
    {0, "<svg"sv, "an SVG picture", kNothing},
    {0, "<!DOCTYPE"sv, "a web page", kWebPage},
    {0, "<!doctype"sv, "a web page", kWebPage},
    {0, "<html"sv, "a web page", kWebPage},
    {0, "<HTML"sv, "a web page", kWebPage},
    {0, "{\""sv, "a JSON text", kOtherReader},
    {0, "[{"sv, "a JSON text", kOtherReader},
    {0, "ISO-10303-21"sv, "a drawing", kOtherReader},
    {0,
     "\xef\xbb\xbf"
     "EXP"sv,
     "an interchange file behind a byte order mark", "take the first three bytes away"},
    {0, "\xff\xfe"sv, "a text of two bytes a character", kAsText},
    {0, "\xfe\xff"sv, "a text of two bytes a character", kAsText},
};

bool isText(std::string_view start) {
    return std::none_of(start.begin(), start.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return code < 32 && (code < 8 || code > 13) && code != 26 && code != 27;
    });
}

// The volume before one whose name ends in two digits, "" where there is none.
std::string volumeBefore(const std::string& path) {
    const auto digit = [&](std::size_t fromEnd) {
        const char character = path.size() < fromEnd ? ' ' : path[path.size() - fromEnd];
        return character >= '0' && character <= '9' ? character - '0' : -1;
    };
    if (digit(1) < 0 || digit(2) < 0) return {};
    const int number = digit(2) * 10 + digit(1) - 1;
    if (number < 0) return {};
    std::string before = path.substr(0, path.size() - 2);
    before += static_cast<char>('0' + number / 10);
    before += static_cast<char>('0' + number % 10);
    std::error_code ignored;
    return fs::is_regular_file(before, ignored) ? before : "";
}

std::string firstVolume(std::string path) {
    for (std::string before = path; !before.empty(); before = volumeBefore(path)) path = before;
    return path;
}

}  // namespace

bool hasHeaderLine(std::string_view start) {
    if (!start.starts_with("EXP") || start.size() < 6) return false;
    return std::all_of(start.begin() + 3, start.begin() + 6, [](char character) {
        return character == ' ' || (character >= '0' && character <= '9');
    });
}

bool beginsInterchange(std::string_view start) {
    if (hasHeaderLine(start)) return true;
    // A code of three letters, two blanks and the precision, as in "ARC  2".
    const std::string_view line = start.substr(0, start.find_first_of("\r\n"));
    const auto isCode = [](char character) {
        return (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9');
    };
    return line.size() >= 6 && isCode(line[0]) && isCode(line[1]) &&
           (isCode(line[2]) || line[2] == ' ') && line.substr(3, 2) == "  " && line[5] >= '1' &&
           line[5] <= '3' && line.find_first_not_of(' ', 6) == std::string_view::npos;
}

Likeness likenessOf(std::string_view start) {
    if (start.empty()) return {"an empty file", "it may not have been copied as a whole", true};
    const std::string_view container = containers::containerOf(start);
    if (!container.empty()) return {"a " + std::string(container) + " file", kUnpack};
    for (const Magic& magic : kTable) {
        if (start.size() > magic.at && start.substr(magic.at).starts_with(magic.bytes)) {
            return {magic.what, magic.advice};
        }
    }
    if (beginsInterchange(start)) return {"an interchange file", "no section of it could be read"};
    if (isText(start)) return {"a text", kUnknown};
    return {"data of a kind that intake does not know", kUnknown};
}

Likeness likenessAt(const std::string& path) {
    std::error_code failed;
    const fs::file_status status = fs::status(path, failed);
    switch (status.type()) {
        case fs::file_type::not_found:
            return {"not there", "look at the name and the folder", true};
        case fs::file_type::directory:
            return {"a folder", "give a file in it, or `intake show` the path of a dataset", true};
        case fs::file_type::fifo:
        case fs::file_type::socket:
            return {"a pipe", "give - and the pipe as standard input", true};
        case fs::file_type::regular:
            break;
        default:
            return {"no file of bytes", "give a regular file, or - for standard input", true};
    }
    std::ifstream stream(path, std::ios::binary);
    std::string start(containers::kStartBytes, '\0');
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, stream.gcount())));
    if (!stream.is_open()) return {"a file that may not be read", "look at its rights", true};
    Likeness likeness = likenessOf(start);
    const std::string first = firstVolume(path);
    if (first != path && isText(start) && !start.empty() && !beginsInterchange(start)) {
        return {"a later volume", "give the first, " + first};
    }
    return likeness;
}

}  // namespace program
