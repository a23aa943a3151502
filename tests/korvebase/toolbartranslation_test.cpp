#include "korvebase/toolbarhelper.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTranslator>

using KorveCommon::ToolbarHelper;

namespace
{
/// Puts every sentence in brackets.
class Brackets : public QTranslator
{
public:
    QString translate(const char *, const char *sourceText, const char *, int) const override
    {
        return u'[' + QString::fromUtf8(sourceText) + u']';
    }
    bool isEmpty() const override { return false; }
};

std::string worded(unsigned errorId, ToolbarHelper::errorIdContext context)
{
    return ToolbarHelper::Instance().ErrorId2Text(errorId, context).toStdString();
}

TEST(ToolbarTranslation, IsThatOfTheFirstMessage)
{
    Brackets language;
    ASSERT_TRUE(QCoreApplication::installTranslator(&language));
    const auto first = static_cast<ToolbarHelper::errorIdContext>(0);
    const auto second = static_cast<ToolbarHelper::errorIdContext>(1);
    EXPECT_EQ(worded(160, first), "(160) [Cannot copy as server is not reachable.]");
    EXPECT_EQ(worded(7000, second), "(7000) [An unknown error has occurred.]");
    EXPECT_EQ(worded(99, first), "[Error ID 99 not found]");
    EXPECT_EQ(worded(8, second), "[Error ID (8)  not found]");
    QCoreApplication::removeTranslator(&language);
    EXPECT_EQ(worded(160, first), "(160) [Cannot copy as server is not reachable.]");
    EXPECT_EQ(worded(229, second), "(229) [Could not find Korve.]");
}
} // namespace
