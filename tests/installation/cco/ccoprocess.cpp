#include "tests/installation/cco/ccoprocess.h"

#include "installation/cco/orbaccess.h"
#include "tests/installation/cco/testorb.h"
#include "tests/support/waiting.h"

#include <QDir>

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <stdexcept>

namespace
{

CORBA::Object_ptr objectAt(std::uint16_t port, const char *key)
{
    const std::string reference = "corbaloc::1.2@127.0.0.1:" + std::to_string(port) + "/" + key;
    return TestOrb::instance().orb()->string_to_object(reference.c_str());
}

} // namespace

CcoProcess::CcoProcess(const std::string &subsystem, const std::string &workstation,
                       const std::vector<std::uint16_t> &peerPorts)
{
    QStringList arguments{QString::fromStdString(subsystem), QString::fromStdString(workstation)};
    for (const std::uint16_t port : peerPorts)
        arguments << QString::number(port);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(CCO_PROCESS), arguments);
    while (!process.canReadLine())
        if (!process.waitForReadyRead(patienceMs))
            throw std::runtime_error("the central object service does not start");
    // "ready cco 127.0.0.1:PORT IOR:..."
    const QList<QByteArray> words = process.readLine().trimmed().split(' ');
    servedPort = words.value(2).split(':').value(1).toUShort();
    fullReference = words.value(3).toStdString();
}

CcoProcess::~CcoProcess()
{
    resume();
    process.closeWriteChannel();
    if (!process.waitForFinished(patienceMs))
        kill();
}

CCO::IF_CCO_c_ptr CcoProcess::service() const
{
    const CORBA::Object_var object = TestOrb::instance().orb()->string_to_object(fullReference.c_str());
    return CCO::IF_CCO_c::_narrow(object);
}

CCO::IF_CCO_c_ptr CcoProcess::service(std::chrono::milliseconds limit) const
{
    return installation::withCallLimit<CCO::IF_CCO_c>(CCO::IF_CCO_c_var(service()), limit);
}

CCO::IF_CCO_c_Update_ptr CcoProcess::update() const
{
    const CORBA::Object_var object = objectAt(servedPort, "CCOUpdate");
    return CCO::IF_CCO_c_Update::_narrow(object);
}

CCO::IF_CCO_c_ptr CcoProcess::serviceAt(std::uint16_t port)
{
    const CORBA::Object_var object = objectAt(port, "CCO");
    return CCO::IF_CCO_c::_narrow(object);
}

void CcoProcess::limitDescriptors(unsigned most)
{
    const rlimit limit{most, most};
    if (::prlimit(static_cast<pid_t>(process.processId()), RLIMIT_NOFILE, &limit, nullptr) != 0)
        throw std::runtime_error("the descriptors of the central object service cannot be limited");
}

std::size_t CcoProcess::descriptors() const
{
    const QDir folder(QStringLiteral("/proc/%1/fd").arg(process.processId()));
    return static_cast<std::size_t>(folder.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot).size());
}

void CcoProcess::kill()
{
    process.kill();
    process.waitForFinished();
}

void CcoProcess::suspend()
{
    const auto pid = static_cast<pid_t>(process.processId());
    ::kill(pid, SIGSTOP);
    siginfo_t change{};
    ::waitid(P_PID, static_cast<id_t>(pid), &change, WSTOPPED | WNOWAIT); // the signal only asks for it
}

void CcoProcess::resume()
{
    if (process.state() != QProcess::NotRunning)
        ::kill(static_cast<pid_t>(process.processId()), SIGCONT);
}
