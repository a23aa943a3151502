#pragma once

#include "korvebase/korvebase_export.h"

#include "objectmodel/korvechannelparameter.h"

#include <QList>
#include <QObject>

namespace korve::channel
{

/// The data-rate classes, the named bandwidth steps in which a channel samples, stores and replays.
///
/// Thread: any.  Errors: never fails; an unknown name gives the first class, an invalid code an empty text or 0.0.
class KORVEBASE_EXPORT DataRateClass : public QObject
{
    Q_OBJECT
public:
    using DataRate = KORVE_XML::KorveChannelParameter::DataRate;

    DataRateClass() = delete;

    /// The class called @p name; @p ok, if given, tells whether there is one.
    static DataRate fromString(const QString &name, bool *ok = nullptr);
    static QString toString(DataRate rate);
    /// The name as it is shown to a person.
    static QString toDisplayString(DataRate rate);
    /// All classes, in the order of their codes.
    static const QList<DataRate> &values();
    /// The narrowest of @p allowed that covers @p bandwidthHz, else the widest of them; invalid if there is none.
    static DataRate forBandwidth(double bandwidthHz, const QList<DataRate> &allowed);
    /// In Hz.
    static double toBandwidth(DataRate rate);
};

} // namespace korve::channel
