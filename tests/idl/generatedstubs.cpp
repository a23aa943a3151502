#include "tests/idl/generatedstubs.h"

#include <QFile>
#include <QHash>
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

/// "MODULE::INTERFACE", of two groups.
std::string scoped(const QRegularExpressionMatch &match, int group)
{
    return (match.captured(group) + "::" + match.captured(group + 1)).toStdString();
}

/// What IDL calls a type of omniidl's C++.
QString idlWord(QString type)
{
    static const QRegularExpression decoration(R"(^const |(\w*::)+|_ptr$|_out$|_member$|[*&])");
    static const QHash<QString, QString> plain{
        {"char", "string"},           {"String", "string"},       {"WChar", "wstring"},
        {"WString", "wstring"},       {"Octet", "octet"},         {"Boolean", "boolean"},
        {"UShort", "unsigned short"}, {"ULong", "unsigned long"}, {"ULongLong", "unsigned long long"}};
    type.remove(decoration).remove(decoration); // "_ptr" ends the type only when what follows it is gone
    return plain.value(type, type);
}

/// Of "TYPE NAME". A plain type by reference comes out: no operation of ours hands one both ways.
QString idlParameter(const QString &parameter)
{
    const QString type = parameter.left(parameter.lastIndexOf(' '));
    const QString word = idlWord(type);
    if (type.endsWith("_out") || (type.startsWith("::CORBA::") && type.endsWith('&')))
        return "out " + word;
    return type.endsWith('&') && !type.startsWith("const ") ? "inout " + word : word;
}

QString idlParameters(const QString &parameters)
{
    QStringList words;
    for (const QString &parameter : parameters.split(", ", Qt::SkipEmptyParts))
        words << idlParameter(parameter);
    return words.join(", ");
}

/// Of the calls with that descriptor.
QString raisesClause(const QString &text, const QString &descriptor)
{
    static const QRegularExpression exception(R"((\w+)::_PD_repoId)");
    const QString head = "const char* const " + descriptor + "::_user_exns[] = {";
    const int begin = text.indexOf(head);
    if (begin < 0)
        return QString();
    QStringList names;
    for (const std::string &name : firstGroups(text.mid(begin, text.indexOf("};", begin) - begin), exception))
        names << QString::fromStdString(name);
    return names.isEmpty() ? QString() : " raises " + names.join(", ");
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
    static const QRegularExpression interface(R"((\w+)::_objref_(\w+)::_ptrToObjRef)");
    static const QRegularExpression stub(
        R"(\n(\S+) (\w+)::_objref_(\w+)::(\w+)\((.*)\)\n\{\n +(_0RL_cd_\w+) _call_desc\()");
    NamesByHeading interfaces;
    for (const std::string &file : interfaceFiles) {
        const QString text = skeleton(file);
        for (const QRegularExpressionMatch &match : allMatches(text, interface))
            interfaces[scoped(match, 1)];
        for (const QRegularExpressionMatch &match : allMatches(text, stub))
            interfaces[scoped(match, 2)].push_back(QStringLiteral("%1 %2(%3)%4")
                                                       .arg(idlWord(match.captured(1)), match.captured(4),
                                                            idlParameters(match.captured(5)),
                                                            raisesClause(text, match.captured(6)))
                                                       .toStdString());
    }
    return interfaces;
}

NamesByHeading generatedstubs::structures()
{
    static const QRegularExpression structure(R"(struct (stru\w+) \{\n(.*?)\n +void operator>>=)",
                                              QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression member(R"(^ +(\S+) (\w+);$)", QRegularExpression::MultilineOption);
    static const QRegularExpression sequence(
        R"(class (seq\w+|wideText) : public _CORBA_Unbounded_Sequence(?:_w_FixSizeElement)?(?:_|< ?)([\w:]+))");
    NamesByHeading structures;
    for (const std::string &file : interfaceFiles) {
        const QString text = header(file);
        for (const QRegularExpressionMatch &match : allMatches(text, structure))
            for (const QRegularExpressionMatch &found : allMatches(match.captured(2), member))
                structures[file + " " + match.captured(1).toStdString()].push_back(
                    (idlWord(found.captured(1)) + " " + found.captured(2)).toStdString());
        for (const QRegularExpressionMatch &match : allMatches(text, sequence))
            structures[file + " " + match.captured(1).toStdString()] = {
                ("sequence " + idlWord(match.captured(2))).toStdString()};
    }
    return structures;
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
