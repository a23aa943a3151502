#include "apps/korvectl/writewhole.h"

#include <QFileDevice>

namespace korvectl
{

bool writeWhole(QFileDevice &file, const QByteArray &bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        // When a disk becomes full on the way, only the next try has the reason.
        const qint64 more = file.write(bytes.constData() + done, bytes.size() - done);
        if (more <= 0)
            return false;
        done += more;
    }
    return true;
}

} // namespace korvectl
