#include "tests/support/objectmodel/objectclass.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace modeltest;

namespace
{

using Object = REPORTGENERATOR::IRGObject;

bool write(const QString &folder, int number, const QString &name, const QByteArray &bytes)
{
    QFile file(folder + QLatin1Char('/') + name.toLower());
    const QByteArray header{char(number), char(1)};
    return QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) && file.write(header + bytes) > 0;
}

QByteArray tagged(const Object &object)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    object.GetBinary(out, 1, false);
    return bytes.mid(4); // the payload alone
}

QByteArray compact(const ObjectClass &type, const Object &object)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    type.writeCompact(object, out);
    return bytes;
}

} // namespace

/// Writes a full object of each class, in each form, as first inputs: makecorpus FOLDER
int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: makecorpus FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    int number = 0;
    for (const ObjectClass &type : objectClasses()) {
        const auto object = type.filled();
        const bool written = write(folder + "/fuzz_objectxml", number, type.name, object->GetXmlString().toUtf8())
            && write(folder + "/fuzz_objecttagged", number, type.name, tagged(*object))
            && write(folder + "/fuzz_objectcompact", number, type.name, compact(type, *object));
        if (!written) {
            fprintf(stderr, "cannot write below %s\n", argv[1]);
            return 1;
        }
        ++number;
    }
}
