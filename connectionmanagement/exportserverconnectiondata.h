#pragma once

#include "connectionmanagement/abstractserverconnectiondata.h"

namespace KorveCommon
{
/// An export client: holds one tic, to the export commands of one subsystem.
class KORVEBASE_EXPORT ExportServerConnectionData : public AbstractServerConnectionData
{
    Q_OBJECT
public:
    using AbstractServerConnectionData::getClientBasePath;
    using AbstractServerConnectionData::getVtClient;

    /// An empty @p subsystem is the local one, which the central object service is asked for. Blocks then.
    ExportServerConnectionData(const QString &prefix, const QString &subsystem);
    ~ExportServerConnectionData() override;

    QString getClientBasePath() const;
    /// The prefix.
    QString getClientRootPath() const;
    /// Borrowed; null while there is no tic.
    IVtClient *getVtClient();

private:
    void CreateVTConnectTics(const QString &subsystem) override;
    void adoptLocalSubsystem();
};
} // namespace KorveCommon
