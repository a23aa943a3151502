#include "appruntime/cfgcenter.h"

std::unique_ptr<CfgFile> CfgCenter::CreateCfg(const QString &group, View /*view*/, const QString &path)
{
    return std::make_unique<CfgFile>(path, group);
}
