#include <gmock/gmock.h>

#include <QCoreApplication>

/// Every test program runs inside a Qt application, as every program that links the library does.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
