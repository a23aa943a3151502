#include "installation/manager/recorderfinder.h"

#include "installation/manager/limitedreference.h"

#include "coresupport/trace.h"

#include <QStringList>

#include <algorithm>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/recorderfinder";
const std::string recorderFolder = "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveRecorder/";

/// The device in "DEVICE/IF_Control"; empty for anything else. Its id is to be a name in the value tree and the same
/// bytes in every encoding.
QString deviceIn(const QString &name)
{
    const QStringList parts = name.split(u'/');
    const auto isPlain = [](QChar character) { return character > u' ' && character < u'\x7f'; };
    const bool isDevice = parts.size() == 2 && parts[1] == QLatin1String("IF_Control") &&
                          std::all_of(parts[0].cbegin(), parts[0].cend(), isPlain);
    return isDevice ? parts[0] : QString();
}

} // namespace

RecorderFinder::RecorderFinder(CCO::IF_CCO_c_ptr service, std::chrono::milliseconds limit)
    : service(limitedReference<CCO::IF_CCO_c>(service, limit))
{
}

std::optional<std::map<QString, CORBA::Object_var>> RecorderFinder::find()
{
    try {
        auto found = ask();
        noteAnswer(true, "");
        return found;
    } catch (const CORBA::Exception &error) {
        noteAnswer(false, error._name());
        return {};
    }
}

std::map<QString, CORBA::Object_var> RecorderFinder::ask() const
{
    std::map<QString, CORBA::Object_var> found;
    const CCO::seqString_var names = service->ResolveValues(recorderFolder.c_str(), CCO::rtThisServiceOnly);
    for (CORBA::ULong position = 0; position < names->length(); ++position) {
        const std::string name = static_cast<const char *>(names.in()[position]);
        const QString id = deviceIn(QString::fromStdString(name));
        if (id.isEmpty())
            continue;
        const CORBA::Object_var recorder = resolve(recorderFolder + name);
        if (!CORBA::is_nil(recorder))
            found.emplace(id, recorder);
    }
    return found;
}

CORBA::Object_ptr RecorderFinder::resolve(const std::string &path) const
{
    try {
        return service->Resolve(path.c_str(), CCO::rtThisServiceOnly);
    } catch (const CCO::IF_CCO_c_Naming::InvalidType &) { // somebody has put values there
        return CORBA::Object::_nil();
    }
}

void RecorderFinder::noteAnswer(bool now, const char *reason)
{
    if (answers == now)
        return;
    answers = now;
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return now ? QStringLiteral("the central object service answers again")
                   : QStringLiteral("the central object service does not answer: %1").arg(QLatin1String(reason));
    });
}

} // namespace installation
