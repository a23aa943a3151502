#include "installation/manager/channeltext.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

namespace installation
{

namespace
{

/// Writes the members of a structure one by one. Numbers are texts: those of JSON have 53 bits.
struct Writer {
    QJsonObject object{};

    void member(const char *name, const QString &text) { object[QLatin1String(name)] = text; }
    void member(const char *name, bool flag) { object[QLatin1String(name)] = flag; }
    template <typename Number> void number(const char *name, Number value)
    {
        object[QLatin1String(name)] = QString::number(static_cast<quint64>(value));
    }
    void member(const char *name, const QVector<QStringList> &groups)
    {
        QJsonArray all;
        for (const QStringList &group : groups)
            all << QJsonArray::fromStringList(group);
        object[QLatin1String(name)] = all;
    }
};

/// Reads what Writer has written.
struct Reader {
    QJsonObject object{};

    void member(const char *name, QString &text) const { text = object[QLatin1String(name)].toString(); }
    void member(const char *name, bool &flag) const { flag = object[QLatin1String(name)].toBool(); }
    template <typename Number> void number(const char *name, Number &value) const
    {
        number(name, value, std::numeric_limits<Number>::max());
    }
    template <typename Number> void number(const char *name, Number &value, Number last) const
    {
        bool isNumber = false;
        const quint64 read = object[QLatin1String(name)].toString().toULongLong(&isNumber);
        if (!isNumber || read > static_cast<quint64>(last))
            throw std::runtime_error(std::string("no such ") + name);
        value = static_cast<Number>(read);
    }
    void member(const char *name, QVector<QStringList> &groups) const
    {
        for (const QJsonValue group : object[QLatin1String(name)].toArray()) {
            groups << QStringList();
            for (const QJsonValue device : group.toArray())
                groups.last() << device.toString();
        }
    }
};

QJsonObject objectIn(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject())
        throw std::runtime_error("not an object");
    return document.object();
}

/// Those that both directions treat alike.
template <typename Form, typename Settings> void visitPlain(Form &form, Settings &settings)
{
    form.member("name", settings.name);
    form.member("record", settings.record);
    form.member("replay", settings.replay);
    form.member("devices", settings.deviceGroups);
    form.member("receiverAddress", settings.receiverAddress);
    form.member("channelManager", settings.channelManager);
    form.number("sampleRate", settings.sampleRate);
    form.number("sampleBytes", settings.sampleBytes);
    form.member("registersAtArchive", settings.registersAtArchive);
    form.member("forcesRegistration", settings.forcesRegistration);
}

template <typename Form, typename Run> void visitPlainRun(Form &form, Run &run)
{
    form.number("number", run.number);
    form.number("step", run.step);
    form.member("deviceId", run.deviceId);
    form.member("recordId", run.recordId);
    form.member("recordName", run.recordName);
    form.member("session", run.session);
    form.number("connection", run.connection);
    form.number("begin", run.begin);
    form.number("end", run.end);
    form.number("count", run.count);
    form.number("durationS", run.durationS);
    form.number("startedUs", run.startedUs);
    form.member("xg", run.xg);
}

QByteArray textOf(const Writer &writer)
{
    return QJsonDocument(writer.object).toJson(QJsonDocument::Compact);
}

} // namespace

QByteArray toText(const ChannelSettings &settings)
{
    Writer writer;
    visitPlain(writer, settings);
    writer.number("rate", settings.rate);
    writer.number("format", settings.format);
    writer.number("interfaceType", settings.interfaceType);
    if (settings.additionalRate)
        writer.number("additionalRate", *settings.additionalRate);
    return textOf(writer);
}

ChannelSettings settingsFrom(const QByteArray &text)
{
    const Reader reader{objectIn(text)};
    ChannelSettings settings;
    visitPlain(reader, settings);
    reader.number("rate", settings.rate, TQ_KRV::drVUHF_1M);
    reader.number("format", settings.format, TQ_KRV::dfIQBW);
    reader.number("interfaceType", settings.interfaceType, TQ_KRV::SIGIQ_IF);
    if (reader.object.contains(QLatin1String("additionalRate"))) {
        settings.additionalRate = TQ_KRV::drHF_20k;
        reader.number("additionalRate", *settings.additionalRate, TQ_KRV::drVUHF_1M);
    }
    return settings;
}

QByteArray toText(const ChannelRun &run)
{
    Writer writer;
    visitPlainRun(writer, run);
    writer.number("state", run.state);
    return textOf(writer);
}

ChannelRun runFrom(const QByteArray &text)
{
    const Reader reader{objectIn(text)};
    ChannelRun run;
    visitPlainRun(reader, run);
    reader.number("state", run.state, ChannelRun::State::RecordStopping);
    return run;
}

} // namespace installation
