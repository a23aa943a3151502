#pragma once

#include "benchmarks/support/plainrecord.h"
#include "benchmarks/support/require.h"

#include "objectmodel/korve_recorddata.h"

#include <vector>

/// The same 64 records in both forms, all different. A benchmark takes them in turn, so that no branch or cache learns one.
constexpr std::size_t poolSize = 64;

const std::vector<PlainRecord> &plainPool();
const std::vector<KORVE_XML::KORVE_RecordData> &recordPool();

/// Record number @p n; its texts are its own.
PlainRecord makePlain(int n);
/// Shares the texts of @p plain.
KORVE_XML::KORVE_RecordData makeRecord(const PlainRecord &plain);
