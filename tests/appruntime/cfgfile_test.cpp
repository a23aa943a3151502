#include "appruntime/cfgcenter.h"
#include "tests/appruntime/capturedtraces.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace
{
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Cfg : public testing::Test
{
protected:
    QString path(const char *name = "client.ini") const { return folder.filePath(QLatin1String(name)); }
    std::unique_ptr<CfgFile> open(const QString &group = {}) const
    {
        return CfgCenter::CreateCfg(group, CfgCenter::FileView, path());
    }
    std::unique_ptr<CfgFile> openWith(const QByteArray &content) const
    {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return open();
    }
    QString readText(const QByteArray &content) const
    {
        return openWith(content)->text(QStringLiteral("Key"), QStringLiteral("default"));
    }

    const QTemporaryDir folder;
    const CapturedTraces traces;
};

TEST_F(Cfg, IsAllDefaultsWithoutAFile)
{
    for (const QString &missing : {path(), QString(), path("none/client.ini")}) {
        const auto cfg = CfgCenter::CreateCfg(QString(), CfgCenter::FileView, missing);
        EXPECT_EQ(cfg->text(QStringLiteral("Caption"), QStringLiteral("KORVE Manager")),
                  QStringLiteral("KORVE Manager"));
        EXPECT_TRUE(cfg->flag(QStringLiteral("PassiveFTPMode"), true));
        EXPECT_FALSE(cfg->flag(QStringLiteral("PassiveFTPMode"), false));
    }
    EXPECT_FALSE(QFile::exists(path())) << "reading makes no file";
    EXPECT_THAT(traces.texts(), IsEmpty());
}

struct TextCase {
    const char *name;
    const char *content;
    const char *text;
};

class CfgText : public Cfg, public testing::WithParamInterface<TextCase>
{
};

TEST_P(CfgText, IsRead)
{
    EXPECT_EQ(readText(GetParam().content).toStdString(), GetParam().text);
    EXPECT_THAT(traces.texts(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Forms, CfgText,
    testing::Values(TextCase{"Plain", "Key=TCP:10.0.0.1:8004\n", "TCP:10.0.0.1:8004"},
                    TextCase{"Utf8", "Key=Größe \xf0\x9f\x93\xa1\n", "Größe \xf0\x9f\x93\xa1"},
                    TextCase{"Quoted", "Key=\"north, east; west\"\n", "north, east; west"},
                    TextCase{"DoubledBackslashes", "Key=\"\\\\\\\\store\\\\korve\"\n", "\\\\store\\korve"},
                    TextCase{"Blanks", "  Key = a b \n", "a b"}, TextCase{"Empty", "Key=\n", ""},
                    TextCase{"InGeneral", "[General]\nKey=here\n[Other]\nKey=there\n", "here"},
                    TextCase{"Missing", "Other=x\n", "default"}, TextCase{"OtherCase", "key=x\n", "default"},
                    TextCase{"NoText", "Key=@Rect(1 2 3 4)\n", "default"},
                    TextCase{"WindowsLineEnds", "Other=x\r\nKey=y\r\n", "y"}),
    [](const auto &row) { return row.param.name; });

TEST_F(Cfg, JoinsATextThatArrivesAsAListAndTracesIt)
{
    EXPECT_EQ(readText("Key=north,  east,west\n"), QStringLiteral("north, east, west"));
    EXPECT_THAT(traces.texts(),
                ElementsAre(path().toStdString() +
                            ": 'Key' has commas outside of quotation marks and is taken as \"north, east, west\""));
}

TEST_F(Cfg, ReadsTheGroupThatWasAskedFor)
{
    openWith("Key=outside\n[host]\nKey=inside\n");
    EXPECT_EQ(open(QStringLiteral("host"))->text(QStringLiteral("Key"), QString()), QStringLiteral("inside"));
}

class CfgRoundTrip : public Cfg, public testing::WithParamInterface<const char *>
{
};

TEST_P(CfgRoundTrip, KeepsTheText)
{
    const QString text = QString::fromUtf8(GetParam());
    const auto written = open();
    written->setText(QStringLiteral("Key"), text);
    written->setFlag(QStringLiteral("Flag"), true);
    written->save();

    QFile::copy(path(), path("copy.ini")); // read for the first time in this process
    const auto read = CfgCenter::CreateCfg(QString(), CfgCenter::FileView, path("copy.ini"));
    EXPECT_EQ(read->text(QStringLiteral("Key"), QStringLiteral("default")), text);
    EXPECT_TRUE(read->flag(QStringLiteral("Flag"), false));
    EXPECT_THAT(traces.texts(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Texts, CfgRoundTrip,
                         testing::Values("plain", "\\\\store\\new\\x41", "a, b,c", "a;b", "\"quoted\"", " blanks ",
                                         "two\nlines\t", "@Invalid()", "Größe \xf0\x9f\x93\xa1", "%41 [x] =", ""));

struct FlagCase {
    const char *name;
    const char *word;
    bool flag;
};

class CfgFlag : public Cfg, public testing::WithParamInterface<FlagCase>
{
};

TEST_P(CfgFlag, IsReadWhateverTheDefault)
{
    const auto cfg = openWith(QByteArray("Key=") + GetParam().word + "\n");
    for (const bool defaultFlag : {true, false})
        EXPECT_EQ(cfg->flag(QStringLiteral("Key"), defaultFlag), GetParam().flag);
}

INSTANTIATE_TEST_SUITE_P(Words, CfgFlag,
                         testing::Values(FlagCase{"True", "TRUE", true}, FlagCase{"One", "1", true},
                                         FlagCase{"Yes", "\" Yes \"", true}, FlagCase{"False", "False", false},
                                         FlagCase{"Zero", "0", false}, FlagCase{"No", "no", false}),
                         [](const auto &row) { return row.param.name; });

TEST_F(Cfg, TakesTheDefaultForAnUnreadableFlagAndTracesIt)
{
    const auto cfg = openWith("Key=perhaps\nEmpty=\n");
    EXPECT_TRUE(cfg->flag(QStringLiteral("Key"), true));
    EXPECT_FALSE(cfg->flag(QStringLiteral("Empty"), false));
    EXPECT_THAT(traces.texts(), ElementsAre(HasSubstr("'Key' is neither true nor false: \"perhaps\""),
                                            HasSubstr("'Empty' is neither true nor false: \"\"")));
}

struct FaultCase {
    const char *name;
    QByteArray content;
    const char *reason;
};

class FaultyCfg : public Cfg, public testing::WithParamInterface<FaultCase>
{
};

TEST_P(FaultyCfg, IsRefusedWithItsName)
{
    try {
        openWith(GetParam().content);
        FAIL() << "no exception";
    } catch (const CfgError &error) {
        EXPECT_EQ(error.what(), path().toStdString() + ": " + GetParam().reason);
        EXPECT_THAT(traces.texts(), ElementsAre(error.what()));
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultyCfg,
                         testing::Values(FaultCase{"NoKey", "Caption\n", "is not a proper INI file"},
                                         FaultCase{"OpenSection", "[General\nKey=1\n", "is not a proper INI file"},
                                         FaultCase{"Utf16", QByteArray("\xff\xfeK\0e\0y\0", 8),
                                                   "is not a proper INI file"},
                                         FaultCase{"ByteOrderMark", "\xef\xbb\xbfKey=1\n",
                                                   "begins with a byte order mark; save it as UTF-8 without one"}),
                         [](const auto &row) { return row.param.name; });

TEST_F(Cfg, RefusesAFolderAndAPipe)
{
    EXPECT_THROW(CfgCenter::CreateCfg(QString(), CfgCenter::FileView, folder.path()), CfgError);
    ASSERT_EQ(mkfifo(path().toLocal8Bit().constData(), 0600), 0);
    EXPECT_THROW(open(), CfgError);
    EXPECT_THAT(traces.texts(), ElementsAre(HasSubstr("is not a file"), HasSubstr("is not a file")));
}

TEST_F(Cfg, SaysWhenItCannotBeWritten)
{
    const auto cfg = open();
    ASSERT_TRUE(QDir().mkpath(path())); // something else has taken the name
    cfg->setText(QStringLiteral("Key"), QStringLiteral("x"));
    EXPECT_THROW(cfg->save(), CfgError);
}
} // namespace
