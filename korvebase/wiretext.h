#pragma once

#include "idl/korve.hh"

#include <QString>

/// Texts as the remote contracts carry them. Neither way ever yields a null text: setters refuse it, and the ORB dies
/// of it.
namespace KorveCommon::wire
{

/// A person's text from the manager, as QString::fromWCharArray reads it.
QString text(const CORBA::WChar *wide);
/// A person's text from a device.
QString text(const TQ_KORVE::wideText &units);
/// A person's text to the manager, one wide character per UTF-16 unit; the caller owns it.
CORBA::WChar *wideText(const QString &text);

/// An identifier comes in as UTF-8.
QString identifier(const char *utf8);
/// An identifier goes out in Latin-1; the caller owns it.
char *latin1(const QString &identifier); // contract: not the encoding that is read

} // namespace KorveCommon::wire
