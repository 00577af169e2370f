// Comparisons: the same work done by the library and by its peers in one process, in interleaved
// rounds. bench/run divides the medians.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

// Registers one candidate for a work: "ours" is the library, every other name is a peer. `goal` is
// the largest wanted ratio of ours to the peer; 0 for none.
template <class Body>
benchmark::internal::Benchmark* Compare(const std::string& work, const std::string& candidate,
                                        double goal, Body body) {
    const std::string name = work + ";" + candidate + ";" + std::to_string(goal);
    return benchmark::RegisterBenchmark(name.c_str(), std::move(body));
}

// Calls `work` once in each iteration.
template <class Work>
auto Repeat(Work work) {
    return [work = std::move(work)](benchmark::State& state) mutable {
        for (auto _ : state) work();
    };
}

void RegisterAllocator();
void RegisterCacheFile();
void RegisterCommand();
void RegisterDocuments();
void RegisterLog();
void RegisterRecord();
