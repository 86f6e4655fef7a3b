#include "crs/state_plane.h"

#include <algorithm>
#include <array>

namespace crs {

namespace {

using Row = StatePlaneZone;

constexpr std::array kZones = {
    Row{101, 3101, 26729, 26929},   // Alabama East
    Row{102, 3126, 26730, 26930},   // Alabama West
    Row{201, 3151, 26748, 26948},   // Arizona East
    Row{202, 3176, 26749, 26949},   // Arizona Central
    Row{203, 3201, 26750, 26950},   // Arizona West
    Row{301, 3226, 26751, 26951},   // Arkansas North
    Row{302, 3251, 26752, 26952},   // Arkansas South
    Row{401, 3276, 26741, 26941},   // California zone 1
    Row{402, 3301, 26742, 26942},   // California zone 2
    Row{403, 3326, 26743, 26943},   // California zone 3
    Row{404, 3351, 26744, 26944},   // California zone 4
    Row{405, 3376, 26745, 26945},   // California zone 5
    Row{406, 3401, 26746, 26946},   // California zone 6
    Row{407, 3426, 26799, 0},       // California zone 7
    Row{501, 3451, 26753, 26953},   // Colorado North
    Row{502, 3476, 26754, 26954},   // Colorado Central
    Row{503, 3501, 26755, 26955},   // Colorado South
    Row{600, 3526, 26756, 26956},   // Connecticut
    Row{700, 3551, 26757, 26957},   // Delaware
    Row{901, 0, 26758, 26958},      // Florida East
    Row{902, 0, 26759, 26959},      // Florida West
    Row{903, 0, 26760, 26960},      // Florida North
    Row{1001, 3651, 26766, 26966},  // Georgia East
    Row{1002, 3676, 26767, 26967},  // Georgia West
    Row{1101, 3701, 26768, 26968},  // Idaho East
    Row{1102, 3726, 26769, 26969},  // Idaho Central
    Row{1103, 3751, 26770, 26970},  // Idaho West
    Row{1201, 3776, 26771, 26971},  // Illinois East
    Row{1202, 3801, 26772, 26972},  // Illinois West
    Row{1301, 3826, 26773, 26973},  // Indiana East
    Row{1302, 3851, 26774, 26974},  // Indiana West
    Row{1401, 3876, 26775, 26975},  // Iowa North
    Row{1402, 3901, 26776, 26976},  // Iowa South
    Row{1501, 3926, 26777, 26977},  // Kansas North
    Row{1502, 3951, 26778, 26978},  // Kansas South
    Row{1601, 3976, 26779, 2205},   // Kentucky North
    Row{1602, 4001, 26780, 26980},  // Kentucky South
    Row{1701, 4026, 26781, 26981},  // Louisiana North
    Row{1702, 4051, 26782, 26982},  // Louisiana South
    Row{1703, 0, 32099, 32199},     // Louisiana Offshore
    Row{1801, 4076, 26783, 26983},  // Maine East
    Row{1802, 4101, 26784, 26984},  // Maine West
    Row{1900, 4126, 26785, 26985},  // Maryland
    Row{2001, 4151, 26786, 26986},  // Massachusetts Mainland
    Row{2002, 4176, 26787, 26987},  // Massachusetts Island
    Row{2101, 4201, 5623, 0},       // Michigan East
    Row{2102, 4226, 5624, 0},       // Michigan Old Central
    Row{2103, 4251, 5625, 0},       // Michigan West
    Row{2111, 6351, 6966, 26988},   // Michigan North
    Row{2112, 6376, 6201, 26989},   // Michigan Central
    Row{2113, 6401, 6202, 26990},   // Michigan South
    Row{2201, 4276, 26791, 26991},  // Minnesota North
    Row{2202, 4301, 26792, 26992},  // Minnesota Central
    Row{2203, 4326, 26793, 26993},  // Minnesota South
    Row{2301, 4351, 26794, 26994},  // Mississippi East
    Row{2302, 4376, 26795, 26995},  // Mississippi West
    Row{2401, 4401, 26796, 26996},  // Missouri East
    Row{2402, 4426, 26797, 26997},  // Missouri Central
    Row{2403, 4451, 26798, 26998},  // Missouri West
    Row{2500, 0, 0, 32100},         // Montana
    Row{2501, 4476, 32001, 0},      // Montana North
    Row{2502, 4501, 32002, 0},      // Montana Central
    Row{2503, 4526, 32003, 0},      // Montana South
    Row{2600, 0, 0, 32104},         // Nebraska
    Row{2601, 4551, 32005, 0},      // Nebraska North
    Row{2602, 4576, 32006, 0},      // Nebraska South
    Row{2701, 4601, 32007, 32107},  // Nevada East
    Row{2702, 4626, 32008, 32108},  // Nevada Central
    Row{2703, 4651, 32009, 32109},  // Nevada West
    Row{2800, 4676, 32010, 32110},  // New Hampshire
    Row{2900, 4701, 32011, 32111},  // New Jersey
    Row{3001, 4726, 32012, 32112},  // New Mexico East
    Row{3002, 4751, 32013, 32113},  // New Mexico Central
    Row{3003, 4776, 32014, 32114},  // New Mexico West
    Row{3101, 4801, 32015, 32115},  // New York East
    Row{3102, 4826, 32016, 32116},  // New York Central
    Row{3103, 4851, 32017, 32117},  // New York West
    Row{3104, 4876, 4456, 32118},   // New York Long Island
    Row{3200, 4901, 32019, 32119},  // North Carolina
    Row{3301, 4926, 32020, 32120},  // North Dakota North
    Row{3302, 4951, 32021, 32121},  // North Dakota South
    Row{3401, 4976, 32022, 32122},  // Ohio North
    Row{3402, 5001, 32023, 32123},  // Ohio South
    Row{3501, 5026, 32024, 32124},  // Oklahoma North
    Row{3502, 5051, 32025, 32125},  // Oklahoma South
    Row{3601, 5076, 32026, 32126},  // Oregon North
    Row{3602, 5101, 32027, 32127},  // Oregon South
    Row{3701, 5126, 32028, 32128},  // Pennsylvania North
    Row{3702, 5151, 4455, 32129},   // Pennsylvania South
    Row{3800, 5176, 32030, 32130},  // Rhode Island
    Row{3900, 0, 0, 32133},         // South Carolina
    Row{3901, 5201, 32031, 0},      // South Carolina North
    Row{3902, 5226, 32033, 0},      // South Carolina South
    Row{4001, 5251, 32034, 32134},  // South Dakota North
    Row{4002, 5276, 32035, 32135},  // South Dakota South
    Row{4100, 5301, 2204, 32136},   // Tennessee
    Row{4201, 5326, 32037, 32137},  // Texas North
    Row{4202, 5351, 32038, 32138},  // Texas North Central
    Row{4203, 5376, 32039, 32139},  // Texas Central
    Row{4204, 5401, 32040, 32140},  // Texas South Central
    Row{4205, 5426, 32041, 32141},  // Texas South
    Row{4301, 5451, 32042, 32142},  // Utah North
    Row{4302, 5476, 32043, 32143},  // Utah Central
    Row{4303, 5501, 32044, 32144},  // Utah South
    Row{4400, 5526, 32045, 32145},  // Vermont
    Row{4501, 5551, 32046, 32146},  // Virginia North
    Row{4502, 5576, 32047, 32147},  // Virginia South
    Row{4601, 5601, 32048, 32148},  // Washington North
    Row{4602, 5626, 32049, 32149},  // Washington South
    Row{4701, 5651, 32050, 32150},  // West Virginia North
    Row{4702, 5676, 32051, 32151},  // West Virginia South
    Row{4801, 5701, 32052, 32152},  // Wisconsin North
    Row{4802, 5726, 32053, 32153},  // Wisconsin Central
    Row{4803, 5751, 32054, 32154},  // Wisconsin South
    Row{4901, 5776, 32055, 32155},  // Wyoming East
    Row{4902, 5801, 32056, 32156},  // Wyoming East Central
    Row{4903, 5826, 32057, 32157},  // Wyoming West Central
    Row{4904, 5851, 32058, 32158},  // Wyoming West
    Row{5001, 6101, 26731, 26931},  // Alaska zone 1
    Row{5002, 6126, 26732, 26932},  // Alaska zone 2
    Row{5003, 6151, 26733, 26933},  // Alaska zone 3
    Row{5004, 6176, 26734, 26934},  // Alaska zone 4
    Row{5005, 6201, 26735, 26935},  // Alaska zone 5
    Row{5006, 6226, 26736, 26936},  // Alaska zone 6
    Row{5007, 6251, 26737, 26937},  // Alaska zone 7
    Row{5008, 6276, 26738, 26938},  // Alaska zone 8
    Row{5009, 6301, 26739, 26939},  // Alaska zone 9
    Row{5010, 6326, 26740, 26940},  // Alaska zone 10
    Row{5101, 5876, 0, 26961},      // Hawaii zone 1
    Row{5102, 5901, 0, 26962},      // Hawaii zone 2
    Row{5103, 5926, 0, 26963},      // Hawaii zone 3
    Row{5104, 5951, 0, 26964},      // Hawaii zone 4
    Row{5105, 5976, 0, 26965},      // Hawaii zone 5
    Row{5200, 0, 0, 32161},         // Puerto Rico & Virgin Is.
};

const StatePlaneZone* find(int32_t StatePlaneZone::*key, int32_t number) {
    const auto found = std::ranges::find(kZones, number, key);
    return number == 0 || found == kZones.end() ? nullptr : &*found;
}

}  // namespace

const StatePlaneZone* zoneByFips(int32_t fips) { return find(&StatePlaneZone::fips, fips); }
const StatePlaneZone* zoneByNumber(int32_t zone) { return find(&StatePlaneZone::zone, zone); }

}  // namespace crs
