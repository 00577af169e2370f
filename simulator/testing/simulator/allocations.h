// Allocations of the applet's own code, counted; one of them can be made to fail.
//
// An allocation counts if the innermost function of the program on the stack, apart from inline
// functions and templates, is one of the applet or of the common library. Those of the simulator do
// not count, since Windows would make them in memory of its own. The linker script of the test
// program defines both ranges of code: applet_code, applet_code_end, simulator_code,
// simulator_code_end.
#pragma once

// Counts from 1 on; the allocation with that number fails, none for 0.
void CountAllocations(int failing);

int AllocationsCounted();
