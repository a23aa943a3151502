#include "installation/manager/exportorder.h"

#include "installation/cco/orbaccess.h"

#include <QRegularExpression>
#include <QStringList>

namespace installation
{

namespace
{

constexpr int fieldCount = 5;

QString textOf(char *owned)
{
    return QString::fromUtf8(CORBA::String_var(owned).in());
}

} // namespace

ExportOrder orderOf(TQ_KRV::IF_ExportCallback_ptr exporter, std::chrono::milliseconds limit)
{
    ExportOrder order;
    order.exporter = withCallLimit<TQ_KRV::IF_ExportCallback>(exporter, limit);
    order.id = textOf(order.exporter->exportID());
    order.device = textOf(order.exporter->deviceID());
    order.record = textOf(order.exporter->recordID());
    const QStringList fields = order.id.split(u'@', Qt::SkipEmptyParts);
    if (fields.size() != fieldCount)
        return order;
    if (order.device.isEmpty())
        order.device = fields[0];
    if (order.record.isEmpty())
        order.record = fields[1];
    return order;
}

std::optional<StreamAddress> streamAddressIn(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(\\[[0-9a-fA-F:.]+\\]|[^:/?#@\\s\\[\\]]+):([0-9]+)(?:/([0-9]+))?\\z"));
    const QRegularExpressionMatch match = form.match(text);
    bool isPort = false;
    bool isOffset = true;
    StreamAddress address;
    address.host = match.captured(1);
    address.port = match.captured(2).toUShort(&isPort);
    if (!match.captured(3).isEmpty())
        address.offset = match.captured(3).toULongLong(&isOffset);
    return match.hasMatch() && isPort && address.port != 0 && isOffset ? std::optional(address) : std::nullopt;
}

} // namespace installation
