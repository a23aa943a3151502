#include "installation/recorder/transfertarget.h"

#include "installation/recorder/recordererror.h"

#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

namespace installation::recorder
{

namespace
{

RecorderError refusal(const QString &text, const char *expectation)
{
    return {TQ_KORVE::ekINVALID_VALUE, QStringLiteral("\"%1\": %2").arg(text.left(200), QLatin1String(expectation))};
}

QUrl parse(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("tcp"))
        throw refusal(text, "tcp://HOST:PORT/FILENAME?offset=N&size=M is expected");
    if (!url.userInfo().isEmpty() || url.hasFragment())
        throw refusal(text, "neither a user nor a fragment is possible");
    return url;
}

quint64 count(const QString &text, const QUrlQuery &query, const QString &key)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,20}$"));
    const QStringList values = query.allQueryItemValues(key);
    bool isNumber = false;
    const quint64 number = values.value(0).toULongLong(&isNumber);
    if (values.size() != 1 || !isNumber || !digits.match(values.first()).hasMatch())
        throw refusal(text, "offset and size are wanted once each, as whole numbers");
    return number;
}

} // namespace

TransferTarget TransferTarget::ofUrl(const QString &text)
{
    const QUrl url = parse(text);
    if (url.host().isEmpty() || url.port() < 1 || url.port() > 65535)
        throw refusal(text, "a host and a port are wanted");
    const QString fileName = url.path(QUrl::FullyDecoded).mid(1);
    if (fileName.isEmpty() || fileName.contains(QLatin1Char('/')))
        throw refusal(text, "the name of one file is wanted");
    const QUrlQuery query(url);
    if (query.queryItems().size() != 2)
        throw refusal(text, "offset and size are wanted, and nothing else");
    return {url.host(), static_cast<quint16>(url.port()), fileName, count(text, query, QStringLiteral("offset")),
            count(text, query, QStringLiteral("size"))};
}

TransferListing TransferListing::ofText(const QString &text)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    const QString prefix = text.left(colon);
    const bool isOfTransfers = prefix == QLatin1String("sending");
    const TransferListing listing{text.mid(colon + 1), isOfTransfers};
    if (colon < 0 || (prefix != QLatin1String("export") && !isOfTransfers) || listing.recordId.isEmpty())
        throw refusal(text, "export:RECORDID or sending:RECORDID is expected");
    return listing;
}

} // namespace installation::recorder
