#include "tests/installation/cco/servicefixture.h"

#include "tests/installation/cco/testorb.h"

#include <QtTest/QTest>

using namespace std::chrono_literals;

Texts textsOf(const CCO::seqString *owned)
{
    const std::unique_ptr<const CCO::seqString> sequence(owned);
    Texts texts;
    for (CORBA::ULong i = 0; i < sequence->length(); ++i)
        texts.emplace_back((*sequence)[i].in());
    return texts;
}

CCO::seqString sequenceOf(const Texts &texts)
{
    CCO::seqString sequence;
    sequence.length(static_cast<CORBA::ULong>(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i)
        sequence[static_cast<CORBA::ULong>(i)] = texts[i].c_str();
    return sequence;
}

std::string pathIn(const std::string &subsystem, const std::string &name)
{
    return "CCO/LocalSystem/SubSystems/" + subsystem + "/CentralServices/" + name;
}

bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

const char *const ServiceFixture::managerName = "KorveManager/IF_KRV_c_KRV";

ServiceFixture::ServiceFixture()
{
    configuration.systemName = "System";
    configuration.subsystemName = "South";
    configuration.workstationName = "ws1";
    configuration.subsystems = {{"South", {"ws2"}}, {"West", {"w1", "w2"}}};
    configuration.systemWorkstations = {"WS1", "w1"};
    configuration.timing = {.probeInterval = 20ms, .answerLimit = 500ms, .callbackLimit = 2000ms};
}

ServiceFixture::~ServiceFixture()
{
    service.reset();
    owner->retire();
}

void ServiceFixture::startService()
{
    service.emplace(configuration, TestOrb::instance().insPoa());
    const CORBA::Object_var reference = service->reference();
    cco = CCO::IF_CCO_c::_narrow(reference);
}

bool ServiceFixture::knows(const std::string &path)
{
    const CORBA::Object_var found = cco->Resolve(path.c_str(), CCO::rtInstallation);
    return !CORBA::is_nil(found);
}

Texts ServiceFixture::valuesOf(const std::string &path)
{
    return textsOf(cco->ResolveValues(path.c_str(), CCO::rtInstallation));
}
