#pragma once

#include "korvebase/wiretext.h"

#include <omniORB4/CORBA.h>

/// The only two ways in which a string of a command leaves the process.
namespace KorveGUI::remote
{
/// An identifier or an address.
inline CORBA::String_var id(const QString &identifier)
{
    return KorveCommon::wire::latin1(identifier);
}

/// What a person has typed.
inline CORBA::WString_var text(const QString &words)
{
    return KorveCommon::wire::wideText(words);
}
} // namespace KorveGUI::remote
