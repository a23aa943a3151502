#include <QDir>
#include <QFile>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// Runs every file of the folders given through the target: what was found once is not found again.
int main(int argc, char **argv)
{
    int count = 0;
    for (int argument = 1; argument < argc; ++argument) {
        const QDir folder(QString::fromLocal8Bit(argv[argument]));
        for (const QString &name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) {
                fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
                return 1;
            }
            const QByteArray bytes = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size()));
            ++count;
        }
    }
    printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
