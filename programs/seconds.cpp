#include "programs/seconds.h"

#include <QString>

namespace programs
{

std::string complaintAboutSeconds(const std::string &word, double least, double most)
{
    const QString typed = QString::fromStdString(word);
    bool isNumber = false;
    const double seconds = typed.toDouble(&isNumber);
    if (isNumber && seconds >= least && seconds <= most)
        return {};
    constexpr int digits = 9;
    return QStringLiteral("\"%1\" is not a number of seconds from %2 to %3")
        .arg(typed, QString::number(least), QString::number(most, 'g', digits))
        .toStdString();
}

} // namespace programs
