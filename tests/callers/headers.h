/* What the programs that use the callers' headers, compiled by several compilers, share with the test that runs them. */
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
/* Says that something does not hold: what, on which vector, in which lane. */
void headers_fault(const char* what, const char* type, int lane);
#ifdef __cplusplus
}
#endif
