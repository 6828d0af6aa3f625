// What the tool says about a kernel: the verdict, a line or a page for people, a row of CSV, witnesses, a profile for plots.
#pragma once

#include <cstdio>
#include <string>

#include "tools/ulp/run.h"

namespace vorx::ulp {

// "pass", or what is wrong.
std::string verdict(const entry_point& kernel, const outcome& o);

void print_summary(const entry_point& kernel, const outcome& o);
void print_details(const entry_point& kernel, const outcome& o);

void write_csv_head(std::FILE* f);
void write_csv_row(std::FILE* f, const entry_point& kernel, const outcome& o, const options& how);
// function,type,variant,argument bits,result bits,number of the worst result,its signed error in ULP
void write_witness_head(std::FILE* f);
void write_witness(std::FILE* f, const entry_point& kernel, const outcome& o);
// argument,ulp: the largest error by the leading bits of the first argument, in ascending order of the argument.
bool write_profile(const std::string& directory, const entry_point& kernel, const outcome& o);

}  // namespace vorx::ulp
