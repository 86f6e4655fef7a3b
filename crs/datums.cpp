#include "crs/datums.h"

#include <array>

namespace crs {

namespace {

constexpr std::array kSpheroids = {
    Spheroid{"AIRY", "AIRY1830", "Airy 1830", 6377563.396, 299.3249646},
    Spheroid{"MODIFIED_AIRY", "MODAIRY", "Airy Modified 1849", 6377340.189, 299.3249646},
    Spheroid{"AUSTRALIAN", "ANS", "Australian National Spheroid", 6378160, 298.25},
    Spheroid{"BESSEL", "BESSEL1841", "Bessel 1841", 6377397.155, 299.1528128},
    Spheroid{"CLARKE1866", "CLARKE_1866", "Clarke 1866", 6378206.4, 294.978698213898},
    Spheroid{"CLARKE1880", "CLARKE_1880", "Clarke 1880 (RGS)", 6378249.145, 293.465},
    Spheroid{"EVEREST", "EVEREST1830", "Everest 1830 (1937 Adjustment)", 6377276.345, 300.8017},
    Spheroid{"GRS1967", "GRS67", "GRS 1967", 6378160, 298.247167427},
    Spheroid{"GRS1980", "GRS80", "GRS 1980", 6378137, 298.257222101},
    Spheroid{"HELMERT", "HELMERT1906", "Helmert 1906", 6378200, 298.3},
    Spheroid{"INT1909", "INTERNATIONAL1909", "International 1924", 6378388, 297},
    Spheroid{"INT1924", "INTERNATIONAL1924", "International 1924", 6378388, 297},
    Spheroid{"KRASOVSKY", "KRASSOVSKY", "Krassowsky 1940", 6378245, 298.3},
    Spheroid{"SOUTHAMERICAN1969", "SAD69", "GRS 1967 Modified", 6378160, 298.25},
    Spheroid{"SPHERE", "", "Sphere of 6370997 m", 6370997, 0},
    Spheroid{"WGS66", "WGS1966", "NWL 9D", 6378145, 298.25},
    Spheroid{"WGS72", "WGS1972", "WGS 72", 6378135, 298.26},
    Spheroid{"WGS84", "WGS1984", "WGS 84", 6378137, 298.257223563},
};

constexpr std::array kDatums = {
    Datum{"NAD27", "NAS", "NAD27", 4267, "CLARKE1866"},
    Datum{"NAD83", "NAR", "NAD83", 4269, "GRS1980"},
    Datum{"WGS84", "WGE", "WGS 84", 4326, "WGS84"},
    Datum{"WGS72", "WGC", "WGS 72", 4322, "WGS72"},
    Datum{"ED50", "EUR", "ED50", 4230, "INT1909"},
    Datum{"ED79", "EUS", "ED79", 4668, "INT1909"},
    Datum{"OSGB36", "OGB", "OSGB36", 4277, "AIRY"},
    Datum{"AGD66", "AUA", "AGD66", 4202, "AUSTRALIAN"},
    Datum{"AGD84", "AUG", "AGD84", 4203, "AUSTRALIAN"},
    Datum{"NZGD49", "GEO", "NZGD49", 4272, "INT1909"},
    Datum{"SAD69", "SAN", "SAD69", 4618, "SOUTHAMERICAN1969"},
    Datum{"PSAD56", "PRP", "PSAD56", 4248, "INT1909"},
    Datum{"TOKYO", "TOY", "Tokyo", 4301, "BESSEL"},
    Datum{"ADINDAN", "ADI", "Adindan", 4201, "CLARKE1880"},
    Datum{"ARC1950", "ARF", "Arc 1950", 4209, "CLARKE1880"},
    Datum{"ARC1960", "ARS", "Arc 1960", 4210, "CLARKE1880"},
    Datum{"CAPE", "CAP", "Cape", 4222, "CLARKE1880"},
    Datum{"MINNA", "MIN", "Minna", 4263, "CLARKE1880"},
    Datum{"MERCHICH", "MER", "Merchich", 4261, "CLARKE1880"},
    Datum{"AFGOOYE", "AFG", "Afgooye", 4205, "KRASOVSKY"},
    Datum{"BOGOTA", "BOO", "Bogota 1975", 4218, "INT1909"},
    Datum{"CAMPO_INCHAUSPE", "CAI", "Campo Inchauspe", 4221, "INT1909"},
    Datum{"CORREGO_ALEGRE", "COA", "Corrego Alegre 1970-72", 4225, "INT1909"},
    Datum{"HJORSEY", "HJO", "Hjorsey 1955", 4658, "INT1909"},
    Datum{"KANDAWALA", "KAN", "Kandawala", 4244, "EVEREST"},
    Datum{"LUZON", "LUZ", "Luzon 1911", 4253, "CLARKE1866"},
    Datum{"OLD_HAWAIIAN", "OHA", "Old Hawaiian", 4135, "CLARKE1866"},
    Datum{"PUERTO_RICO", "PUR", "Puerto Rico", 4139, "CLARKE1866"},
};

}  // namespace

const Spheroid* spheroid(std::string_view word) {
    if (word.empty()) return nullptr;
    for (const Spheroid& each : kSpheroids) {
        if (word == each.word || word == each.another) return &each;
    }
    return nullptr;
}

const Datum* datum(std::string_view word) {
    for (const Datum& each : kDatums) {
        if (word == each.word) return &each;
        const bool region = word.size() == 5 && word[3] == '_' && word[4] >= 'A' && word[4] <= 'Z';
        if (word == each.letters || (region && word.starts_with(each.letters))) return &each;
    }
    return nullptr;
}

}  // namespace crs
