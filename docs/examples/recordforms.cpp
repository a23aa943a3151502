#include "objectmodel/korve_recorddata.h"

#include <QTextStream>

using KORVE_XML::KORVE_RecordData;

int main()
{
    KORVE_RecordData record;
    record.SetRecordID("R-0001");
    record.SetRecordName("Harbour & coast");
    record.SetSize(8'000'000);
    record.SetStartTime(1'700'000'000'000'000); // microseconds since 1970, UTC
    record.SetStopTime(1'700'000'000'100'000);
    record.SetRecordStatus(KORVE_RecordData::IDLE);
    record.SetDataFormat(KORVE_RecordData::RAW);
    record.SetRecordingLoopSize(0);
    record.SetStopPosition(8'000'000);
    record.SetStartPosition(0);
    record.SetDataRate(KORVE_RecordData::VUHF_20M);
    record.SetDeletable(true);
    KORVE_XML::BookmarkEntry bookmark;
    bookmark.SetTimestamp(1'700'000'000'050'000);
    bookmark.SetBookmark("first burst");
    record.AppendBookmarkEntry(bookmark);

    const QString xml = record.GetXmlString(); // throws when a mandatory member is missing
    KORVE_RecordData again;
    if (!again.SetXmlString(xml, false) || again != record)
        return 1;
    QTextStream(stdout) << xml << "\nread back: " << again.GetRecordName() << ", " << again.GetSize() << " bytes\n";
    return 0;
}
