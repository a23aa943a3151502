#include <QProcess>

#include <gmock/gmock.h>

namespace
{

/// What bash would offer at the end of @p line, by the script that the program prints.
QStringList offered(const QString &line, const QString &word)
{
    const QString script = QStringLiteral("compopt() { :; }; eval \"$(\"$0\" completion bash)\"; COMP_LINE=$1; "
                                          "COMP_POINT=${#1}; _korvectl \"$0\" \"$2\"; "
                                          "(( ${#COMPREPLY[@]} == 0 )) || printf '%s\\n' \"${COMPREPLY[@]}\"");
    QProcess bash;
    bash.start(QStringLiteral("bash"), {QStringLiteral("-c"), script, QStringLiteral(KORVECTL_PROGRAM), line, word});
    if (!bash.waitForFinished(30000))
        throw std::runtime_error("bash does not end");
    EXPECT_EQ(bash.readAllStandardError().toStdString(), "");
    return QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

TEST(BashCompletion, ListsTheCommands)
{
    EXPECT_EQ(offered(QStringLiteral("korvectl "), QString()).join(u' '),
              QLatin1String("devices records record replay spectrum export time watch errors tree doctor completion"));
    EXPECT_EQ(offered(QStringLiteral("korvectl tree w"), QStringLiteral("w")), QStringList{QStringLiteral("watch")});
    EXPECT_EQ(offered(QStringLiteral("korvectl --js"), QStringLiteral("--js")), QStringList{QStringLiteral("--json")});
    EXPECT_EQ(offered(QStringLiteral("korvectl x"), QStringLiteral("x")), QStringList());
}
