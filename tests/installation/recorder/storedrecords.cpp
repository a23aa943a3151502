#include "tests/installation/recorder/storedrecords.h"

#include "installation/recorder/file.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <stdexcept>

using namespace installation::recorder;
using KORVE_XML::KORVE_RecordData;

Record fullRecord(const QString &name)
{
    Record record;
    record.id = QStringLiteral("R1");
    record.name = name;
    record.sizeBytes = 400;
    record.startUs = 1'700'000'000'123'456;
    record.stopUs = 1'700'000'001'123'456;
    record.status = KORVE_RecordData::IDLE;
    record.format = KORVE_RecordData::IQ_BURST;
    record.rate = KORVE_RecordData::VUHF_20M;
    record.deletable = true;
    record.loopSizeBytes = 18'446'744'073'709'551'615u;
    record.startPosition = 4;
    record.stopPosition = 396;
    record.index = {{0, 1'700'000'000'123'456, 98'500'000, 20'000'000, 18'000'000},
                    {400, 1'700'000'001'123'456, 9'007'199'254'740'993, 20'000'000, 18'000'000}};
    record.bookmarks = {{18'446'744'073'709'551'615u, QStringLiteral("here")}};
    record.history = {{1, QStringLiteral("came in")}, {2, QString::fromUtf8("heard by Jörg \xF0\x9F\x91\x82")}};
    record.sigmf = {{QStringLiteral("captures"), QJsonArray{QJsonObject{{QStringLiteral("core:sample_start"), 0}}}},
                    {QStringLiteral("annotations"), QJsonArray{}},
                    {QStringLiteral("global"), QJsonObject{{QStringLiteral("core:datatype"), QStringLiteral("ci16_le")},
                                                           {QStringLiteral("other:gain"), 17.5}}}};
    return record;
}

QString storeRecord(RecordStore &store, const QString &name, const QByteArray &samples)
{
    const RecordStore::Reservation reservation = store.reserve();
    writeWhole(reservation.samplesPath, samples);
    Record record = fullRecord(name);
    record.id = reservation.id;
    record.sizeBytes = samples.size();
    store.adopt(record);
    return record.id;
}

QMap<QString, QByteArray> contentOf(const QString &path)
{
    QMap<QString, QByteArray> content;
    for (const QString &name : QDir(path).entryList(QDir::Files | QDir::Hidden))
        content.insert(name, readFile(path + QLatin1Char('/') + name));
    return content;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    return file.readAll();
}
