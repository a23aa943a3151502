#pragma once

#include "objectbase/objectbase_export.h"

#include <QByteArray>
#include <QString>

#include <memory>

class QDataStream;
class QDateTime;
class QFile;
class QXmlStreamReader;
class QXmlStreamWriter;

namespace REPORTGENERATOR
{

class Logger;

/// Family of an object; carried along, never interpreted here.
enum ObjectTypes { UnknownObjectType = 0, XmlObjectType = 1 };

/// Base of all value objects: identity, validation flag, logger, and the whole-document forms around the three forms
/// that a class itself knows (XML, tagged, and the check before output).
///
/// Validation is on in a new object. Flag and logger do not belong to the value: they can be changed on const objects.
/// Thread: objects are unprotected values. Failures are exceptions of exceptions.h, unless an operation returns bool.
class OBJECTBASE_EXPORT IRGObject
{
public:
    // Building and dropping objects is what lists spend their time on: both stay inline.
    IRGObject() = default;
    explicit IRGObject(ObjectTypes type) : objectType(type) {}
    IRGObject(const IRGObject &) = delete;
    IRGObject &operator=(const IRGObject &) = delete;

    // contract: slot order
    virtual ~IRGObject() = default;
    virtual bool HasData() const = 0;
    virtual void Reset() = 0;
    virtual void Check(bool argument) const = 0;
    virtual void Check() const;
    virtual bool IsValid(float value) const;
    virtual bool IsValid(bool value) const;
    virtual bool IsValid(unsigned value) const;
    virtual bool IsValid(qint64 value) const;
    virtual bool IsValid(const QDateTime &value) const;
    virtual bool IsValid(const QString &value) const;
    virtual bool IsValid(double value) const;
    virtual bool IsValid(int value) const;
    virtual void SetInvalid(float &value) const;
    virtual void SetInvalid(unsigned &value) const;
    virtual void SetInvalid(qint64 &value) const;
    virtual void SetInvalid(QString &value) const;
    virtual void SetInvalid(double &value) const;
    virtual void SetInvalid(int &value) const;
    virtual void GetXml(QXmlStreamWriter &writer) const = 0;
    virtual bool GetBinary(QDataStream &out, int id, bool writeId) const = 0;
    virtual void SetBinary(QDataStream &in, int length) = 0;
    /// Reads a whole document; with @p resetFirst the object is emptied before. False for malformed text or a root
    /// element of another name; what a member refuses is thrown.
    virtual bool SetXmlString(const QString &text, bool resetFirst);
    /// Reads what GetBinaryRepresentation wrote; throws BinaryParsingException for another class's bytes.
    virtual bool SetBinaryRepresentation(QDataStream &in);
    /// Takes over what @p other holds, as if its XML were read into this object.
    virtual bool MergeRGObject(const IRGObject &other);
    virtual ObjectTypes GetObjectType() const { return objectType; }
    virtual const QString &GetObjectName() const { return objectName; }
    /// Entered on the object's start element, left on its end element.
    virtual void ProcessXml(QXmlStreamReader &reader);
    /// The object's element without a document header; empty when the object has nothing to write.
    virtual QString GetXmlString() const;
    /// One tagged frame under the object's identifier, Qt_5_12, big endian, whatever the stream is set to. False when
    /// nothing was written.
    virtual bool GetBinaryRepresentation(QDataStream &out) const;
    virtual QByteArray GetBinaryRepresentationAsQByteArray() const;
    /// The binary representation through qCompress at @p level (-1 to 9), as one byte array on the stream.
    virtual bool GetCompressedBinaryRepresentation(QDataStream &out, int level) const;
    virtual QByteArray GetCompressedBinaryRepresentationAsQByteArray(int level) const;
    virtual bool LoadXml(const QString &fileName);
    virtual bool LoadXml(QFile *file);
    /// Reads a binary representation. Here as above, a file that is not open is opened, and closed again.
    virtual bool LoadBinary(QFile *file);
    /// Replaces the file as a whole or leaves it as it was.
    virtual bool SaveXml(const QString &fileName) const;
    virtual void SetValidate(bool on) const { validate = on; }
    virtual bool GetValidate() const { return validate; }
    virtual void SetLogger(std::shared_ptr<Logger> logger) const;
    virtual void ResetLogger() const;
    virtual const QString &GetVersion() const;
    virtual void SetObjectType(ObjectTypes type);

protected:
    virtual void SetObjectName(const QString &name) { QString(name).swap(objectName); }
    virtual void ProcessXmlStartElement(QXmlStreamReader &reader) = 0;

public:
    const std::shared_ptr<Logger> &GetLogger() const { return logger; }

protected:
    /// The class identifier that frames of this object carry.
    void SetObjectId(qint64 id) { objectId = id; }
    /// The text of the current element without that of its children; leaves the reader on the element's end.
    QString GetTextValue(QXmlStreamReader &reader) const;
    /// Steps over the @p length bytes of an element nobody knows, as far as there are any; returns the bytes passed.
    int skipCurrentElement(QDataStream &in, int length, int tag) const;

private:
    bool ReadDocument(QXmlStreamReader &reader, bool resetFirst);

    QString objectName;
    qint64 objectId = 0;
    mutable std::shared_ptr<Logger> logger;
    ObjectTypes objectType = UnknownObjectType;
    mutable bool validate = true;
};

} // namespace REPORTGENERATOR
