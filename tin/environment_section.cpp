// ENV: the counts, extent and version of a surface.
#include <bit>

#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tin/environment.h"
#include "tin/member_files.h"
#include "tin/properties.h"
#include "tin/sections.h"

namespace intake {

namespace {

// What leaves with the environment: 40 words, of which the store keeps the first 24.
struct Transfer {
    static constexpr int32_t kWords = 40;
    TINENV environment{};
    std::array<int32_t, kWords - sizeof(TINENV) / 4> zeros{};
};
static_assert(sizeof(Transfer) == Transfer::kWords * 4);

void skipLines(int32_t count) {
    Line line;
    for (int32_t number = 0; number < count; ++number) IMPLIN(line);
}

// The counts, and the copies of the count line behind them, which nobody reads.
void readCounts(TINENV& environment) {
    constexpr std::size_t kShortForm = 31;
    Line line;
    IMPLIN(line);
    TINENV& env = environment;
    const bool shortForm = line.view().size() == kShortForm;
    if (shortForm) {
        read<"3I10">(line, env.nodeCount, env.triangleCount, env.hullCount);
    } else {
        read<"3I10,I1,3I10">(line, env.nodeCount, env.triangleCount, env.hullCount, env.digit,
                             env.secondTriangleCount, env.secondNodeCount, env.secondHullCount);
    }
    if (env.secondTriangleCount == 0) env.secondTriangleCount = env.triangleCount;
    if (env.secondNodeCount == 0) env.secondNodeCount = env.nodeCount;
    if (env.secondHullCount == 0) env.secondHullCount = env.hullCount;
    for (const int32_t count :
         {env.nodeCount, env.triangleCount, env.hullCount, env.secondTriangleCount,
          env.secondNodeCount, env.secondHullCount}) {
        if (count < 0) fatal("Invalid TIN count (IMPENV)");
    }
    skipLines(shortForm ? 2 : 3);
}

// The box, the two reals behind it, the range of z and the version.
void readExtent(TINENV& environment) {
    constexpr std::size_t kExponent = 10;  // of a first field of 14 columns
    Line line;
    IMPLIN(line);
    TINENV& env = environment;
    auto& box = env.box;
    if (line[kExponent] == 'E') {
        read<"1P,4E14.7">(line, box[0], box[1], box[2], box[3]);
        IMPLIN(line);
        float version = 0;
        read<"1P,5E14.7">(line, env.fifthReal, env.sixthReal, env.lowestZ, env.highestZ, version);
        env.version = std::bit_cast<int32_t>(version);
        return;
    }
    read<"1P,3E21.14">(line, box[0], box[1], box[2]);
    IMPLIN(line);
    read<"1P,E21.14">(line, box[3]);
    IMPLIN(line);
    read<"1P,2E21.14,2E14.7,I10">(line, env.fifthReal, env.sixthReal, env.lowestZ, env.highestZ,
                                  env.version);
}

}  // namespace

void IMPENV(const Name& surface, Status& status) {
    Name path;
    tifnam(surface, path, kEnvironmentFile);
    Handle channel{};
    tifcre(channel, path, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    Transfer transfer;
    TINENV& environment = transfer.environment;
    readCounts(environment);
    tifset(&environment.nodeCount, kNodeCount);
    tifset(&environment.triangleCount, kTriangleCount);
    tifset(&environment.hullCount, kHullCount);
    readExtent(environment);
    tifput(channel, Transfer::kWords, &transfer, Words::kEnvironment);
    skipLines(1);
    tifcls(channel);
    status = kSuccess;
}

}  // namespace intake
