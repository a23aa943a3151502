#pragma once

#include "objectbase/irgobject.h"

#include <QDataStream>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

/// The smallest value object: one text, in an XML element and in a frame of tag, length and UTF-8.
class Note : public REPORTGENERATOR::IRGObject
{
public:
    using IRGObject::IRGObject;
    using IRGObject::skipCurrentElement;

    Note()
    {
        SetObjectName(QStringLiteral("Note"));
        SetObjectId(0xf0000001);
    }

    bool HasData() const override { return !text.isNull(); }
    void Reset() override { text = QString(); }
    void Check(bool argument) const override { checkedWith = argument; }
    void GetXml(QXmlStreamWriter &writer) const override { writer.writeTextElement(GetObjectName(), text); }
    bool GetBinary(QDataStream &out, int id, bool writeId) const override
    {
        const QByteArray bytes = text.toUtf8();
        if (writeId)
            out << qint32(id);
        out << qint32(bytes.size());
        out.writeRawData(bytes.constData(), bytes.size());
        return true;
    }
    void SetBinary(QDataStream &in, int length) override
    {
        QByteArray bytes(length, '\0');
        in.readRawData(bytes.data(), length);
        text = QString::fromUtf8(bytes);
    }
    void ProcessXmlStartElement(QXmlStreamReader &reader) override
    {
        text += GetTextValue(reader);
        children += 1;
    }

    QString text;
    int children = 0;
    mutable bool checkedWith = true;
};
