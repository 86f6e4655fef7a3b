#include "companions/store/member_names.h"

#include <array>

#include "system/system.h"

namespace store {

namespace {

struct Member {
    int32_t code;
    std::string_view name;
};

constexpr std::array kMembers = {
    // Features of a coverage.
    Member{1, "arc"},
    Member{2, "lab"},
    Member{11, "pal"},
    Member{29, "pff"},
    Member{14, "cnt"},
    Member{22, "tol"},
    Member{36, "lnk"},
    Member{42, "adp"},
    Member{44, "adi"},
    Member{16, "txt"},
    Member{89, "rxp"},
    Member{90, "rpl"},
    // Texts.
    Member{31, "log"},
    Member{28, "prj"},
    Member{104, "metadata.xml"},
    // Tables whose records lie in the dataset; the codes above 1000 are those of double precision.
    Member{3, "tic.dat"},
    Member{1003, "tic.dat"},
    Member{7, "bnd.dat"},
    Member{1007, "bnd.dat"},
    Member{18, "pat.dat"},
    Member{91, "pat.dat"},
    Member{19, "aat.dat"},
    Member{30, "trn.dat"},
    Member{43, "add.dat"},
    Member{45, "rej.dat"},
    Member{20, "nat.dat"},
    Member{72, "sec.dat"},
    Member{73, "rat.dat"},
    Member{69, "sta.dat"},
    Member{71, "vat.dat"},
    Member{76, "tat.dat"},
    Member{77, "stk.dat"},
    // Spatial indexes.
    Member{46, "lab.idx"},
    Member{47, "arc.idx"},
    Member{48, "pal.idx"},
    Member{49, "txt.idx"},
    Member{93, "rpl.idx"},
    // Surfaces, and their older generation.
    Member{75, "tenv"},
    Member{51, "tnxy"},
    Member{52, "tnz"},
    Member{53, "tnod"},
    Member{54, "tedg"},
    Member{55, "thul"},
    Member{56, "tnid"},
    Member{74, "tmsk"},
    Member{88, "env"},
    Member{81, "nxy"},
    Member{82, "nz"},
    Member{83, "nod"},
    Member{84, "edg"},
    Member{85, "hul"},
    Member{86, "nid"},
    Member{87, "msk"},
};

bool standsForItself(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9') ||
           character == '_' || character == '-';
}

}  // namespace

std::string_view memberName(int32_t code) {
    for (const Member& member : kMembers) {
        if (member.code == code) return member.name;
    }
    return {};
}

std::string encodeName(std::string_view name) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char character : name) {
        if (standsForItself(character)) {
            text += character;
        } else {
            const auto value = static_cast<unsigned char>(character);
            text += '%';
            text += kDigits[value >> 4];
            text += kDigits[value & 15];
        }
    }
    return text;
}

std::string joinPath(std::string_view directory, std::string_view name) {
    if (directory.empty() || os::isAbsolute(name)) return std::string(name);
    std::string path(directory);
    if (!os::isSeparator(path.back())) path += '/';
    return path.append(name);
}

std::string_view plainPath(std::string_view path) {
    while (path.size() > 1 && os::isSeparator(path.back())) path.remove_suffix(1);
    return path;
}

namespace {

// Where the last name of a plain path begins.
std::size_t startOfName(std::string_view path) {
    std::size_t start = path.size();
    while (start > 0 && !os::isSeparator(path[start - 1])) --start;
    return start;
}

}  // namespace

std::string_view directoryPart(std::string_view path) {
    path = plainPath(path);
    const std::size_t start = startOfName(path);
    return start <= 1 ? path.substr(0, start) : plainPath(path.substr(0, start));
}

std::string_view namePart(std::string_view path) {
    path = plainPath(path);
    return path.substr(startOfName(path));
}

std::string memberPath(std::string_view dataset, int32_t code, std::string_view subclass) {
    if (code == 0) return std::string(plainPath(dataset));
    const std::string_view name = memberName(code);
    if (name.empty()) return {};
    std::string path = joinPath(plainPath(dataset), name);
    if (!subclass.empty()) path += '.' + encodeName(subclass);
    return path;
}

std::string infoDirectory(std::string_view dataset) {
    return joinPath(directoryPart(dataset), "info");
}

}  // namespace store
