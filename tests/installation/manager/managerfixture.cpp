#include "tests/installation/manager/managerfixture.h"

#include "tests/installation/cco/testorb.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include <QtTest/QTest>

using namespace installation;
using namespace std::chrono_literals;

namespace
{

CentralObjectConfiguration centralConfiguration()
{
    CentralObjectConfiguration configuration;
    configuration.subsystemName = "South";
    configuration.workstationName = "ws1";
    // Names of objects that are gone stay for the life of a test: the manager must cope with them.
    configuration.timing.probeInterval = 1h;
    return configuration;
}

} // namespace

ManagerFixture::ManagerFixture() : centralService(centralConfiguration(), TestOrb::instance().insPoa())
{
    const CORBA::Object_var object = centralService.reference();
    cco = CCO::IF_CCO_c::_narrow(object);
    configuration.workstationName = QStringLiteral("ws1");
    configuration.stateFolder = folder.filePath(QStringLiteral("manager"));
    configuration.timing = {.lookInterval = 20ms, .statusLimit = 300ms, .clientLimit = 300ms, .callLimit = 500ms};
    startRecorder();
}

ManagerFixture::~ManagerFixture()
{
    service.reset();
    recorder.reset();
}

void ManagerFixture::startRecorder(std::chrono::milliseconds answerLimit)
{
    recorder.reset();
    recorder::RecorderConfiguration recorderConfiguration;
    recorderConfiguration.statePath = folder.filePath(QStringLiteral("recorder"));
    recorderConfiguration.objectKey = "REC1";
    recorderConfiguration.answerLimit = answerLimit;
    recorder.emplace(recorderConfiguration, TestOrb::instance().insPoa());
    registerRecorder("REC1", CORBA::Object_var(recorder->reference()));
}

void ManagerFixture::stopRecorder()
{
    const CORBA::Object_var reference = recorder->reference();
    recorder.reset();
    // While the manager's watch is in a call, the object still takes others.
    ASSERT_TRUE(QTest::qWaitFor([&] { return bool(reference->_non_existent()); }, patienceMs));
}

void ManagerFixture::registerRecorder(const char *device, CORBA::Object_ptr object)
{
    cco->Register(("KorveRecorder/" + std::string(device) + "/IF_Control").c_str(), object, 0);
}

void ManagerFixture::startManager()
{
    service.reset();
    service.emplace(configuration, TestOrb::instance().insPoa(), cco);
    const CORBA::Object_var object = service->reference();
    manager = TQ_KRV::IF_KRV_c_KRV::_narrow(object);
    admin = manager->getKorveAdminInterface();
}

bool ManagerFixture::becomes(const char *device, CORBA::ULong state)
{
    return QTest::qWaitFor(
        [&] {
            try {
                CORBA::ULong now = 2;
                const CORBA::String_var text = manager->getDeviceInformation(device, now);
                return now == state;
            } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &) {
                return false;
            }
        },
        patienceMs);
}

QString ManagerFixture::importRecord(const QString &name, int sampleCount)
{
    return recorder->importFile(writeWavFile(folder.path(), name, sampleCount));
}

TQ_KRV::IF_KRV_c_KRV::eKRVKind kindRaisedBy(const std::function<void()> &call)
{
    try {
        call();
    } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &raised) {
        return raised.kind;
    }
    throw std::logic_error("nothing was raised");
}

QString textOf(const CORBA::WChar *wide)
{
    return QString::fromWCharArray(wide);
}
