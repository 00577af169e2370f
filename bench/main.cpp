#include "comparison.h"

int main(int argc, char** argv) {
    RegisterDocuments();
    RegisterLog();
    RegisterAllocator();
    RegisterRecord();
    RegisterCommand();
    RegisterCacheFile();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
