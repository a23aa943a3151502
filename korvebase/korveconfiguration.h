#pragma once

#include "korvebase/korvebase_export.h"

#include <QObject>
#include <QString>

class CfgFile;

namespace KorveCommon
{

/// What an application's configuration file says, and the one place that builds the root path of a subsystem in the
/// value tree. Shared as std::shared_ptr.
///
/// Thread: main.  Errors: traced; what could not be read keeps its default.
class KORVEBASE_EXPORT KorveConfiguration : public QObject
{
    Q_OBJECT
public:
    explicit KorveConfiguration(QObject *parent = nullptr);
    ~KorveConfiguration() override;

    /// Reads the INI file @p cfgPath. What it does not say has its default, also when an earlier file said it.
    void Initialize(const QString &cfgPath);

    void SetToolbar(bool toolbar) { isToolbar = toolbar; }
    /// Keeps the name in lower case.
    void SetConnectedKorveServer(const QString &name) { connectedServer = name.toLower(); }
    /// Says so even if the name is the one before.
    void SetCurrentSubSystem(const QString &subsystem);
    void SetValuePathPrefix(const QString &prefix) { valuePathPrefix = prefix; }

    bool IsToolbar() const { return isToolbar; }
    bool IsDebuggingEnabled() const { return file.isDebugging; }
    bool getSetRecordIdle() const { return file.setRecordIdle; }
    bool GetPassiveFTPMode() const { return file.passiveFtp; }
    QString getCaption() const { return file.caption; }
    /// With backslashes between its parts.
    QString DefaultArchiveDirectory() const { return file.defaultArchiveDirectory; }
    QString KorveAddressHost() const { return file.addressHost; }
    long KorveAddressPort() const { return file.addressPort; }
    QString ConnectedKorveServer() const { return connectedServer; }
    QString GetCurrentSubSystem() const { return currentSubSystem; }
    QString GetValuePathPrefix() const { return valuePathPrefix; }
    QString cfgPath() const { return configurationPath; }
    QString HelpFilePath() const { return file.helpFilePath; }

    /// Prefix, "/SubSystems/" and the name, which may be empty.
    QString MakeRootPath(const QString &subsystem) const;
    /// The root of the current subsystem; the prefix alone when there is none.
    QString GetKorveRootPath() const;

Q_SIGNALS:
    void signalSubsystemChanged(const QString &);

private:
    /// What a file says, each key with its default.
    struct FileContent {
        bool isDebugging = false;
        bool setRecordIdle = false;
        bool passiveFtp = true;
        QString caption = QStringLiteral("KORVE Manager");
        QString defaultArchiveDirectory;
        QString addressHost = QStringLiteral("127.0.0.1");
        long addressPort = 8004;
        QString helpFilePath;
    };

    void ReadConfiguration(const QString &path);
    void readKeys(const CfgFile &keys);
    void readAddress(const QString &address);

    FileContent file;
    bool isToolbar = false;
    QString connectedServer;
    QString currentSubSystem;
    QString valuePathPrefix;
    QString configurationPath;
};

} // namespace KorveCommon
