#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "objectmodel/korve_recorddata.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const auto connections = std::make_shared<KorveCommon::HMIServerConnectionData>(QString());
    KorveGUI::KorveGuiToServerCorbaHandler handler(QString(), connections, QString());
    QTimer look; // the connection builds itself up from the event loop
    QObject::connect(&look, &QTimer::timeout, &application, [&] {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler.GetKorveInterface(); // ours to release
        if (CORBA::is_nil(manager))
            return;
        TQ_KRV::seqString_var devices = manager->getAllDevices();
        for (CORBA::ULong n = 0; n < devices->length(); ++n) {
            QVector<KORVE_XML::KORVE_RecordData> records;
            const unsigned long error = handler.getAllRecords(QString::fromUtf8(devices[n].in()), records);
            QTextStream(stdout) << devices[n].in() << ": " << records.size() << " records, error " << error << '\n';
            for (const KORVE_XML::KORVE_RecordData &record : records)
                QTextStream(stdout) << "  " << record.GetRecordName() << ", " << record.GetSize() << " bytes\n";
        }
        QCoreApplication::quit();
    });
    look.start(100);
    return QCoreApplication::exec();
}
