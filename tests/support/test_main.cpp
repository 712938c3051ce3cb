// The main of every test program: GoogleTest inside a QCoreApplication, so tests can run Qt sockets,
// processes and timers through tests/support/qt_wait.h. A test program that needs widgets defines its own
// main (creating a QApplication); this object is then never linked in from the support library.

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    // Where the fixtures and the built programs are, unless the caller says otherwise.
    setenv("TALLYBOT_SOURCE_DIR", TALLYBOT_DEFAULT_SOURCE_DIR, 0);
    setenv("TALLYBOT_BINARY_DIR", TALLYBOT_DEFAULT_BINARY_DIR, 0);
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
