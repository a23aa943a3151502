#include "tests/appruntime/capturedtraces.h"
#include "tests/faults/branches.h"
#include "tests/faults/client.h"
#include "tests/faults/faultyinstallation.h"
#include "tests/faults/scripttable.h"
#include "tests/faults/sentences.h"

#include <QDir>
#include <QFile>

#include <set>

using testing::ElementsAreArray;

namespace
{

std::vector<std::string> allScripts()
{
    std::vector<std::string> names;
    for (const QString &file : QDir(scriptPath({})).entryList({QStringLiteral("*.faults")}, QDir::Files, QDir::Name))
        names.push_back(file.toStdString());
    return names;
}

std::vector<ScriptRow> allRows()
{
    std::vector<ScriptRow> rows;
    for (const std::string &script : allScripts())
        for (const ScriptRow &row : rowsOf(script))
            rows.push_back(row);
    return rows;
}

/// Others trace, too, such as that a central object service answers.
std::vector<std::string> handlersTraces(const CapturedTraces &traces)
{
    std::vector<std::string> texts = traces.texts();
    std::erase_if(texts, [&](const std::string &text) {
        const std::string source = traces.sourceOf(text);
        return source.find("guitoserver") == source.npos && source != "common/errorlogging";
    });
    return texts;
}

/// A script in a real installation, and a client that does what its rows say.
class ScriptTest : public FaultyInstallation, public testing::WithParamInterface<std::string>
{
protected:
    void runScript()
    {
        QFile file(scriptPath(GetParam()));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        start(file.readAll());
        recordId = importRecord();
        client.emplace(address(), recordId);
    }
    void expect(const ScriptRow &row)
    {
        SCOPED_TRACE(row.line + " # " + row.command);
        CapturedTraces traces(32);
        const std::string outcome = client->run(row.command);
        EXPECT_EQ(outcome, row.outcome);
        std::vector<std::string> expected;
        for (const std::string &text : row.traces)
            expected.push_back(filled(text));
        EXPECT_THAT(handlersTraces(traces), ElementsAreArray(expected));
        if (!row.flow.empty())
            expectSentence(outcome, row.flow);
    }
    /// Scripts do not know the id of the record, and where we are.
    std::string filled(const std::string &text) const
    {
        return QString::fromStdString(text)
            .replace(QLatin1String("RECORD"), QString::fromStdString(recordId))
            .replace(QLatin1String("ADDRESS"), address())
            .toStdString();
    }
    static void expectSentence(const std::string &number, const std::string &flow)
    {
        EXPECT_EQ(sentences::read(flow, number, "R 1"), sentences::sentence(flow, number, "R 1"));
    }

    std::string recordId;
    std::optional<Client> client;
};

} // namespace

TEST_P(ScriptTest, GivesNumberTraceAndSentenceOfEachRow)
{
    runScript();
    for (const ScriptRow &row : rowsOf(GetParam()))
        expect(row);
}

INSTANTIATE_TEST_SUITE_P(Scripts, ScriptTest, testing::ValuesIn(allScripts()),
                         [](const auto &info) { return info.param.substr(0, info.param.find('.')); });

TEST(AllScripts, ProduceEveryNumberThatHasASentenceAndOneThatHasNone)
{
    std::set<std::string> produced;
    for (const ScriptRow &row : allRows()) {
        if (row.flow.empty())
            continue;
        const std::vector<std::string> known = sentences::numbersOf(row.flow);
        const bool isKnown = std::find(known.begin(), known.end(), row.outcome) != known.end();
        produced.insert(row.flow + ' ' + (isKnown ? row.outcome : "other"));
    }
    std::vector<std::string> missing;
    for (const std::string &flow : sentences::flows())
        for (const std::string &number : sentences::numbersOf(flow))
            if (produced.count(flow + ' ' + number) == 0)
                missing.push_back(flow + ' ' + number);
    EXPECT_THAT(missing, testing::IsEmpty());
}

TEST(AllScripts, TakeEveryBranchOfTheHandlers)
{
    const std::vector<ScriptRow> rows = allRows();
    std::vector<std::string> missing;
    for (const Branch &branch : allBranches())
        if (std::none_of(rows.begin(), rows.end(), [&](const ScriptRow &row) { return branch.isTakenBy(row); }))
            missing.push_back(told(branch));
    EXPECT_THAT(missing, testing::IsEmpty());
}

TEST(AllTables, OfErrorTextsBelongToAFlow)
{
    std::set<std::string> flows;
    for (const std::string &flow : sentences::flows())
        flows.insert(QString::fromStdString(flow).toLower().toStdString() + ".txt");
    std::set<std::string> tables;
    for (const QString &file : QDir(QStringLiteral(ERROR_TEXTS)).entryList(QDir::Files))
        tables.insert(file.toStdString());
    EXPECT_EQ(tables, flows);
}
