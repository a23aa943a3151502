#include "valuetreelib/selitemdesc.h"

namespace values
{
const SelItemDesc g_svdCommand[svdCommandCount] = {
    {QStringLiteral("Start"), 0.0, 0},
    {QStringLiteral("Stop"), 1.0, 1},
    {QStringLiteral("Idle"), 2.0, 2},
};

const SelItemDesc g_svdResult[svdResultCount] = {
    {QStringLiteral("None"), 0.0, 0},   {QStringLiteral("Running"), 1.0, 1}, {QStringLiteral("Done"), 2.0, 2},
    {QStringLiteral("Failed"), 3.0, 3}, {QStringLiteral("Aborted"), 4.0, 4},
};
} // namespace values
