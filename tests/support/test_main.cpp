// The main of every test program: GoogleTest inside a QCoreApplication, so tests can run Qt sockets,
// processes and timers through tests/support/qt_wait.h. A test program that needs widgets defines its own
// main (creating a QApplication); this object is then never linked in from the support library.

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
