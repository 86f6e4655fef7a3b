#include <cstdio>

#include "bench/measure.h"

int main(int argc, char** argv) {
    try {
        bench::registerFields();
        bench::registerLines();
        bench::registerImports();
        bench::registerTin();
        bench::registerGridMemory();
        bench::registerIndex();
        bench::registerLinear();
        bench::registerFullWorkspace();
        bench::registerProgram();
        bench::registerPolygons();
        bench::registerFormats();
        bench::registerRasters();
        bench::registerBatch();
        bench::registerSync();
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
