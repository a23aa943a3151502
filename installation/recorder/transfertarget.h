#pragma once

#include <QString>

namespace installation::recorder
{

/// Where a file of a record is to be sent: "tcp://HOST:PORT/FILENAME?offset=N&size=M".
struct TransferTarget {
    QString host;
    quint16 port = 0;
    QString fileName;
    quint64 offset = 0;    ///< of the first byte that is wanted
    quint64 sizeBytes = 0; ///< that the file had when it was listed

    /// @throws RecorderError with `ekINVALID_VALUE` for what is not in this form, to the letter.
    static TransferTarget ofUrl(const QString &text);
};

/// What is to be listed: the files of a record by "export:RECORDID", or those that are being sent by "sending:RECORDID".
struct TransferListing {
    QString recordId;
    bool isOfTransfers = false;

    /// @throws RecorderError with `ekINVALID_VALUE` for what is in neither form.
    static TransferListing ofText(const QString &text);
};

} // namespace installation::recorder
