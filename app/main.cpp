// Entry point: parses the command line and starts the window or the headless runner.
#include <QApplication>
#include <QCommandLineParser>
#include <QLabel>

#include <cstdio>

int main(int argc, char* argv[]) {
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg(argv[i]);
        if (arg == "--version") {
            std::printf("tallybot %s\n", TALLYBOT_VERSION);
            return 0;
        }
        if (arg == "--help" || arg == "-h") {
            std::printf("Usage:\n"
                        "  tallybot [--home DIR] [--headless] [COMMAND]\n"
                        "  tallybot [--home DIR] --send COMMAND\n"
                        "  tallybot --version | --help\n");
            return 0;
        }
    }
    QApplication app(argc, argv);
    QLabel window("Tallybot");
    window.show();
    return QApplication::exec();
}
