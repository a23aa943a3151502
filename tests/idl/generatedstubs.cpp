#include "tests/idl/generatedstubs.h"

#include <QFile>
#include <QRegularExpression>

namespace
{

const std::vector<std::string> interfaceFiles{"lumbalandatacom", "korvemanager", "korve", "cco"};

QString contentOf(const std::string &path)
{
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString skeleton(const std::string &name)
{
    return contentOf(std::string(GENERATED_STUBS "/") + name + "SK.cc");
}

QString header(const std::string &name)
{
    return contentOf(std::string(GENERATED_STUBS "/") + name + ".hh");
}

std::vector<QRegularExpressionMatch> allMatches(const QString &text, const QRegularExpression &pattern)
{
    std::vector<QRegularExpressionMatch> matches;
    for (auto match = pattern.globalMatch(text); match.hasNext();)
        matches.push_back(match.next());
    return matches;
}

std::vector<std::string> firstGroups(const QString &text, const QRegularExpression &pattern)
{
    std::vector<std::string> groups;
    for (const QRegularExpressionMatch &match : allMatches(text, pattern))
        groups.push_back(match.captured(1).toStdString());
    return groups;
}

} // namespace

std::set<std::string> generatedstubs::repositoryIds()
{
    static const QRegularExpression definition(R"(::_PD_repoId = "(IDL:[^"]+)\")");
    std::set<std::string> ids;
    for (const std::string &file : interfaceFiles)
        for (const std::string &id : firstGroups(skeleton(file), definition))
            ids.insert(id);
    return ids;
}

NamesByHeading generatedstubs::operations()
{
    static const QRegularExpression dispatcher(R"((\w+)::_impl_(\w+)::_dispatch\(omniCallHandle& _handle\)\n)");
    static const QRegularExpression operation(R"(strMatch\(op, "(\w+)\"\))");
    NamesByHeading interfaces;
    for (const std::string &file : interfaceFiles) {
        const QString text = skeleton(file);
        for (const QRegularExpressionMatch &match : allMatches(text, dispatcher)) {
            const int begin = match.capturedEnd();
            const QString body = text.mid(begin, text.indexOf("\n}\n", begin) - begin);
            interfaces[(match.captured(1) + "::" + match.captured(2)).toStdString()] = firstGroups(body, operation);
        }
    }
    return interfaces;
}

NamesByHeading generatedstubs::enumerations()
{
    static const QRegularExpression enumeration(R"(enum (\w+) \{ ([\w, ]+) /\*)");
    static const QRegularExpression literal(R"((\w+))");
    NamesByHeading enumerations;
    for (const std::string &file : interfaceFiles)
        for (const QRegularExpressionMatch &match : allMatches(header(file), enumeration))
            enumerations[file + " " + match.captured(1).toStdString()] = firstGroups(match.captured(2), literal);
    return enumerations;
}

NamesByHeading contractlists::read(const std::string &fileName)
{
    NamesByHeading lists;
    std::string heading;
    for (const QString &line : contentOf(std::string(CONTRACT_LISTS "/") + fileName).split('\n')) {
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith(' '))
            lists.at(heading).push_back(line.trimmed().toStdString());
        else
            lists[heading = line.toStdString()];
    }
    return lists;
}
