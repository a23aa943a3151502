#pragma once

#include "idl/cco.hh"

#include <QStringList>

namespace CorbaCommon
{
inline CCO::seqString toSequence(const QStringList &list)
{
    CCO::seqString sequence;
    sequence.length(static_cast<CORBA::ULong>(list.size()));
    for (int i = 0; i < list.size(); ++i)
        sequence[static_cast<CORBA::ULong>(i)] = list[i].toUtf8().constData();
    return sequence;
}

inline QStringList toList(const CCO::seqString &sequence)
{
    QStringList list;
    for (CORBA::ULong i = 0; i < sequence.length(); ++i)
        list << QString::fromUtf8(sequence[i].in());
    return list;
}
} // namespace CorbaCommon
