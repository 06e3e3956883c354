// The main function of these tests: the bus needs an application object.

#include <gmock/gmock.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
