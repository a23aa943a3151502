#pragma once

#include "idl/korve.hh"

#include <QString>

// Texts of a recorder's contract, unit by unit.

inline TQ_KORVE::wideText wide(const QString &text)
{
    TQ_KORVE::wideText units;
    units.length(static_cast<CORBA::ULong>(text.size()));
    for (int i = 0; i < text.size(); ++i)
        units[static_cast<CORBA::ULong>(i)] = text.at(i).unicode();
    return units;
}

inline QString narrow(const TQ_KORVE::wideText &units)
{
    QString text;
    for (CORBA::ULong i = 0; i < units.length(); ++i)
        text.append(QChar(units[i]));
    return text;
}
