#pragma once

#include "tests/apps/korvectl/korvectlfixture.h"

#include <QJsonObject>

/// The client beside the services of a host whose recorder has one record: a second of 8000 samples of two bytes.
class RecordFixture : public KorvectlFixture
{
protected:
    static void SetUpTestSuite();

    /// The words of @p line, where "RECORD" is the id of that record, and @p last, which may have blanks.
    static Run askFor(const char *line, const QString &last = QString());
    static QJsonObject object(const Run &run);
    /// As `record show` tells it.
    static QJsonObject record();

    /// Has that service start again, with things going wrong as @p faults says; returns when the record can be had again.
    static void restart(const char *role, const QByteArray &faults = QByteArray());

    static QString recordId;
};
