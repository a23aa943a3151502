#include "tests/installation/program/visitedrecorder.h"

#include "idl/cco.hh"
#include "orbconnection/orbhandler.h"
#include "orbconnection/publishedendpoint.h"

using CorbaCommon::OrbHandler;

class VisitedRecorder::Servant : public FakeRecorder
{
public:
    void announceNotificationReceiver(Receiver receiver) override
    {
        const QString host = CorbaCommon::publishedEndpoint(receiver).host;
        const std::scoped_lock lock(mutex);
        if (!visitors.contains(host))
            visitors << host;
    }
    char *getFirmwareVersion() override
    {
        ++looks;
        return FakeRecorder::getFirmwareVersion();
    }

    std::mutex mutex; // guards the next
    QStringList visitors;
    std::atomic<int> looks = 0;
};

VisitedRecorder::VisitedRecorder()
    : servant(new Servant), activation(OrbHandler::Instance().keyedPoa(), "VisitedRecorder", servant)
{
}

void VisitedRecorder::registerAs(const char *name, const QString &host) const
{
    const QByteArray text = CorbaCommon::centralServiceReference(host).toLatin1();
    const CORBA::Object_var service = OrbHandler::Instance().orb()->string_to_object(text.constData());
    CCO::IF_CCO_c_var(CCO::IF_CCO_c::_unchecked_narrow(service))
        ->Register(name, CORBA::Object_var(activation.reference()), 0);
}

QStringList VisitedRecorder::visitors() const
{
    const std::scoped_lock lock(servant->mutex);
    return servant->visitors;
}

int VisitedRecorder::looks() const
{
    return servant->looks;
}
