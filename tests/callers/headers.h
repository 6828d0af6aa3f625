// What the programs that use the callers' headers, compiled by several compilers, share with the test that runs them.
#pragma once

// Says that something does not hold: what, on which vector, in which lane.
extern "C" void headers_fault(const char* what, const char* type, int lane);
