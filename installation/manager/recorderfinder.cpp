#include "installation/manager/recorderfinder.h"

#include <QStringList>

#include <algorithm>

namespace installation
{

namespace
{

/// The device in "DEVICE/IF_Control"; empty for anything else. Its id is to be a name in the value tree and the same
/// bytes in every encoding.
QString deviceIn(const std::string &name)
{
    const QStringList parts = QString::fromStdString(name).split(u'/');
    const auto isPlain = [](QChar character) { return character > u' ' && character < u'\x7f'; };
    const bool isDevice = parts.size() == 2 && parts[1] == QLatin1String("IF_Control") &&
                          std::all_of(parts[0].cbegin(), parts[0].cend(), isPlain);
    return isDevice ? parts[0] : QString();
}

} // namespace

RecorderFinder::RecorderFinder(CCO::IF_CCO_c_ptr service, std::chrono::milliseconds limit)
    : registered(service, "KorveRecorder/", limit)
{
}

std::optional<std::map<QString, CORBA::Object_var>> RecorderFinder::find()
{
    const auto objects = registered.find([](const std::string &name) { return !deviceIn(name).isEmpty(); });
    if (!objects)
        return {};
    std::map<QString, CORBA::Object_var> found;
    for (const auto &[name, object] : *objects)
        found.emplace(deviceIn(name), object);
    return found;
}

} // namespace installation
