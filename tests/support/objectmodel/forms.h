#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QString>

#include <string>

namespace REPORTGENERATOR
{
class IRGObject;
}

namespace modeltest
{

// One object into one of its forms and back. Streams are big endian, version Qt_5_12.

/// The frame with tag, length and payload; without @p withTag the length comes first.
QByteArray taggedForm(const REPORTGENERATOR::IRGObject &object, quint32 tag, bool withTag = true);
/// The frame's payload alone.
QByteArray taggedPayload(const REPORTGENERATOR::IRGObject &object);
void readTagged(REPORTGENERATOR::IRGObject &object, const QByteArray &payload);
/// Reads as if the frame had said @p length.
void readTagged(REPORTGENERATOR::IRGObject &object, const QByteArray &payload, int length);

template <class T> QByteArray compactForm(const T &object)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_12);
    object.GetVersionSpecificBinaryWithoutValidation(out);
    return bytes;
}

template <class T> void readCompact(T &object, const QByteArray &bytes)
{
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_5_12);
    object.SetVersionSpecificBinaryWithoutValidation(in);
}

/// What GetXml writes, empty elements as "<X/>".
std::string xmlOf(const REPORTGENERATOR::IRGObject &object);

/// @p bytes in hexadecimal digits.
std::string hex(const QByteArray &bytes);
/// Bytes written by hand as hexadecimal digits, blanks wherever they help the eye.
QByteArray bytes(const char *digits);
/// A part of bytes written by hand: @p text in UTF-8.
QByteArray utf8(const char *text);
/// A part of bytes written by hand: @p text in UTF-16, big endian.
QByteArray utf16(const QString &text);

} // namespace modeltest
