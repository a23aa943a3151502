#pragma once

#include "tests/installation/program/installationfixture.h"

#include <QJsonArray>

/// The client as a process, beside the services of a host.
class KorvectlFixture : public InstallationFixture
{
protected:
    /// Empty @p centralService: the one of the services. Waits, bounded.
    static Run ask(const QStringList &arguments, const QString &centralService = QString());
    static QStringList words(const char *text) { return QString::fromUtf8(text).split(u' '); }
    /// The output, which is JSON.
    static QJsonArray array(const Run &run);
    static bool isOneSentence(const QString &text);
};
