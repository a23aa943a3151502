#include "coresupport/errorhandler.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/vtconnectionobserver.h"
#include "orbconnection/vtserver.h"
#include "tests/orbconnection/simulation/side.h"
#include "tests/support/commandinput.h"
#include "valuetreelib/node.h"
#include "valuetreelib/valuebase.h"

#include <QTimer>

#include <iostream>

using namespace CorbaCommon;
using namespace simulation;
using values::Tree;

namespace
{
MirrorTiming shortTiming()
{
    MirrorTiming timing;
    timing.heartbeat = std::chrono::milliseconds(300);
    timing.backOff = {std::chrono::milliseconds(10), std::chrono::milliseconds(50), std::chrono::milliseconds(100)};
    return timing;
}

/// Makes changes as fast as the event loop lets it, and tells after each so many.
class Program
{
public:
    Program(Side &side, std::uint64_t seed) : side(side), random(seed)
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { makeSome(); });
    }
    void run(int count)
    {
        left = count;
        timer.start(0);
    }

private:
    void makeSome()
    {
        constexpr int atOnce = 250;
        constexpr int perReport = 2500;
        side.endSeeding(); // the mirror has written since the last time
        for (int i = 0; i < atOnce; ++i)
            side.act(random);
        left -= atOnce;
        if (left <= 0)
            timer.stop();
        if (left % perReport == 0)
            std::cout << (left > 0 ? "runs" : "done") << std::endl;
    }

    Side &side;
    Random random;
    QTimer timer;
    int left = 0;
};

/// One line an item: its kind, its path below the top, whether it is this process's own, and what a value holds.
void dump(const Side &side)
{
    for (values::TreeItem *const item : side.tree.subtree(side.top)) {
        const QString path = item->GetPathName();
        const bool isOwn = item->isNode() ? side.isOwnNode(path) : side.isOwn(path);
        std::string word;
        if (!item->isNode())
            static_cast<values::ValueBase *>(item)->AddObjectStateStringForTransmission(word);
        std::cout << (item->isNode() ? "node" : "value") << " ." << path.mid(side.top.size()).toStdString()
                  << (isOwn ? " own " : " shared ") << QByteArray::fromStdString(word).toHex().toStdString() << '\n';
    }
    std::cout << "end" << std::endl;
}
} // namespace

/// TOP SEED LISTEN [SERVER SERVERPATH]: shares TOP of its tree, at port 8004 of LISTEN ("-": does not), and mirrors
/// SERVERPATH of the tree server at SERVER there. Input: `run COUNT` makes so many changes, `dump` tells what is there.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString listen = arguments.value(3);
    const bool isServer = arguments.size() <= 4;
    OrbSettings settings = OrbSettings::fromEnvironment();
    if (listen != QLatin1String("-")) {
        settings.address = listen;
        settings.ports = {VtServer::port};
    }
    OrbHandler::configure(settings);
    ErrorHandler::Instance().setTraceMask(0); // else what is refused at random fills the output
    Side side(Tree::Instance(), arguments.value(1), isServer);
    std::unique_ptr<VtServer> server;
    if (listen != QLatin1String("-"))
        server = std::make_unique<VtServer>(Tree::Instance(), shortTiming());
    std::unique_ptr<VtConnectionObserver> mirror;
    if (!isServer) {
        mirror = std::make_unique<VtConnectionObserver>(arguments[5], side.top, VtConnectData{QString(), arguments[4]},
                                                        QString(), shortTiming());
    }
    Program program(side, arguments.value(2).toULongLong());
    const CommandInput input([&](const QStringList &words) {
        words[0] == QLatin1String("run") ? program.run(words.value(1).toInt()) : dump(side);
    });
    std::cout << "ready storm" << std::endl;
    return QCoreApplication::exec();
}
