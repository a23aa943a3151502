#pragma once

#include "benchmarks/support/plainrecord.h"

#include "objectmodel/korve_recorddata.h"

#include <cstdlib>
#include <vector>

/// The same 64 records in both forms, all different. A benchmark takes them in turn, so that no branch or cache learns one.
constexpr std::size_t poolSize = 64;

const std::vector<PlainRecord> &plainPool();
const std::vector<KORVE_XML::KORVE_RecordData> &recordPool();

/// Ends the program when what is to be timed does not do its work.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    fprintf(stderr, "benchmark is wrong: %s\n", what);
    std::exit(1);
}
