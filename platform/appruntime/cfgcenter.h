#pragma once

#include "appruntime/cfgfile.h"

#include <memory>

/// Opens the configuration of an application.
class APPRUNTIME_EXPORT CfgCenter
{
public:
    /// Which layers of the configuration are seen.
    enum View {
        FileView = 0, ///< what the file says, nothing else
    };

    /// Opens the INI file @p path; the keys are those of its group @p group, or when that is empty the ones without a
    /// group. A file that is missing has no keys. Throws CfgError when there is one that cannot be read.
    static std::unique_ptr<CfgFile> CreateCfg(const QString &group, View view, const QString &path);
};
