#include "simulator/fault_run.h"

#include <windows.h>

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "simulator/allocations.h"
#include "simulator/faults.h"

const FaultRun* FaultRun::Current() {
    static FaultRun run;
    const char* const fault = std::getenv("STORY_FAULT");
    if (!fault) return nullptr;
    std::istringstream(fault) >> run.m_kind >> run.m_number;
    return &run;
}

void FaultRun::Begin() const {
    simulator::ResetCallCounts();
    CountAllocations(m_kind == "allocation" ? m_number : 0);
    if (m_kind != "allocation" && m_kind != "nothing")
        simulator::FailNext(m_kind, 1, ERROR_NOT_ENOUGH_MEMORY, simulator::kAnyDetail,
                            m_number - 1);
}

bool FaultRun::HasFailed() const {
    if (m_kind == "allocation") return AllocationsCounted() >= m_number;
    for (const auto& call : simulator::FaultableCalls())
        if (call.name == m_kind) return call.calls >= m_number;
    return false;
}

void FaultRun::End() const {
    if (m_kind == "nothing") {
        std::cout << "\nallocation " << AllocationsCounted() << '\n';
        for (const auto& call : simulator::FaultableCalls())
            std::cout << call.name << ' ' << call.calls << '\n';
    }
    CountAllocations(0);
    (void)simulator::ClearFaults();
}

void FaultRun::Require(bool isMet, const char* requirement) {
    if (isMet) return;
    std::cerr << "After the fault: " << requirement << std::endl;
    std::_Exit(3);
}
