#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "objectmodel/korve_recorddata.h"
#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const auto connections = std::make_shared<KorveCommon::HMIServerConnectionData>("");
    KorveGUI::KorveGuiToServerCorbaHandler handler("", connections, "");
    QTimer look; // the connection builds itself up from the event loop
    QObject::connect(&look, &QTimer::timeout, &application, [&] {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler.GetKorveInterface(); // ours to release
        if (CORBA::is_nil(manager))
            return;
        try {
            TQ_KRV::seqString_var devices = manager->getAllDevices();
            for (CORBA::ULong n = 0; n < devices->length(); ++n) {
                QVector<KORVE_XML::KORVE_RecordData> records;
                const unsigned long error = handler.getAllRecords(devices[n].in(), records);
                QTextStream(stdout) << devices[n].in() << ": " << records.size() << " records, error " << error << '\n';
                for (const KORVE_XML::KORVE_RecordData &record : records)
                    QTextStream(stdout) << "  " << record.GetRecordName() << ", " << record.GetSize() << " bytes\n";
            }
            QCoreApplication::exit(EXIT_SUCCESS);
        } catch (const CORBA::SystemException &) {} // it is asked again until its time is up
    });
    look.start(100);
    QTimer::singleShot(10000, [] { QCoreApplication::exit(EXIT_FAILURE); });
    const int exitCode = QCoreApplication::exec();
    QTextStream(stderr) << (exitCode == EXIT_SUCCESS ? "" : "No recorder manager answers: try `korvectl doctor`.\n");
    return exitCode;
}
