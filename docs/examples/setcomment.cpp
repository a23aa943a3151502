#include "common/errornumber.h"
#include "connectionmanagement/guitoserveradmincorbahandler.h"
#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "korvebase/traceerror.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

using KorveManagement::TraceError;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments(); // DEVICE RECORD COMMENT
    const auto connections = std::make_shared<KorveCommon::HMIServerConnectionData>(QString());
    const auto manager = std::make_shared<KorveGUI::KorveGuiToServerCorbaHandler>(QString(), connections, QString());
    KorveGUI::GuiToServerAdminCorbaHandler commands(manager);
    QTimer look; // the connection builds itself up from the event loop
    QObject::connect(&look, &QTimer::timeout, &application, [&] {
        if (!manager->IsConnected())
            return;
        const unsigned long number = commands.SetRecordComment(words.value(1), words.value(2), words.value(3));
        if (number != korve::errornumber::success)
            QTextStream(stderr) << TraceError::toText(number, TraceError::Admin, words.value(2)) << '\n';
        if (commands.OutcomeIsUnknown()) // it may have been done; read the record before trying again
            QTextStream(stderr) << "Nobody knows whether the comment has been set.\n";
        QCoreApplication::exit(number == korve::errornumber::success ? 0 : 1);
    });
    look.start(100);
    QTimer::singleShot(10000, &application, [&] {
        if (manager->IsConnected())
            return;
        QTextStream(stderr) << "No recorder manager answers: try `korvectl doctor`.\n";
        QCoreApplication::exit(1);
    });
    return QCoreApplication::exec();
}
