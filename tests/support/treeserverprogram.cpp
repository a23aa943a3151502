#include "orbconnection/orbhandler.h"
#include "orbconnection/vtserver.h"
#include "tests/support/commandinput.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <iostream>

#include <poll.h>
#include <unistd.h>

using namespace CorbaCommon;
using namespace values;

namespace
{
void set(const QString &path, const QString &content)
{
    Tree &tree = Tree::Instance();
    if (!tree.findValue(path)) {
        auto value = std::make_unique<Value<QString>>();
        value->SetName(path.mid(path.lastIndexOf(u'/') + 1), nullptr);
        tree.addValue(path.left(path.lastIndexOf(u'/')), std::move(value));
    }
    tree.findValue(path)->SetStringValue(content, nullptr);
}

/// set PATH CONTENT; burst PATH COUNT (sets 1 to COUNT); many PATH COUNT (values 1 to COUNT below); remove PATH (a
/// node); print PATH; standstill (of the main thread, until there is more to obey)
void obey(const QStringList &words)
{
    const QString path = words.value(1);
    const int count = words.value(2).toInt();
    if (words[0] == QLatin1String("set"))
        set(path, words.value(2));
    for (int i = 1; words[0] == QLatin1String("burst") && i <= count; ++i)
        set(path, QString::number(i));
    for (int i = 1; words[0] == QLatin1String("many") && i <= count; ++i)
        set(path + u'/' + QString::number(i), QString::number(i));
    if (words[0] == QLatin1String("remove"))
        Tree::Instance().removeNode(path);
    if (words[0] == QLatin1String("standstill")) {
        std::cout << "stands" << std::endl;
        pollfd input{STDIN_FILENO, POLLIN, 0};
        ::poll(&input, 1, -1);
    }
    if (words[0] == QLatin1String("print")) {
        const ValueBase *const value = Tree::Instance().findValue(path);
        std::cout << "value " << (value ? value->GetStringValue().toStdString() : "(absent)") << std::endl;
    }
}
} // namespace

/// ADDRESS HEARTBEAT [QUEUE BYTES]: a tree server at port 8004 of ADDRESS, which does what its standard input says.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.address = arguments.value(1);
    settings.ports = {VtServer::port};
    OrbHandler::configure(settings);
    MirrorTiming timing;
    timing.heartbeat = std::chrono::milliseconds(arguments.value(2).toInt());
    if (arguments.size() > 3)
        timing.queueBytes = arguments[3].toUInt();
    const VtServer server(Tree::Instance(), timing);
    if (!server.isServing())
        return 1;
    const CommandInput input(obey);
    set(QStringLiteral("/K/Device/State"), QStringLiteral("idle"));
    std::cout << "ready tree " << settings.address.toStdString() << ":8004" << std::endl;
    return QCoreApplication::exec();
}
