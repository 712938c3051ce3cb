#include "app/qt/headless_runner.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>

namespace tallybot::app {

namespace {

// The self-pipe of the signal handler: the one place a signal may touch, write end first.
int g_signalPipe[2] = {-1, -1};

extern "C" void OnTerminationSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(g_signalPipe[1], &byte, 1);
}

} // namespace

HeadlessRunner::HeadlessRunner(AppRuntime& runtime, OutputStyle style, std::FILE* out, QObject* parent)
    : QObject(parent), m_runtime(runtime), m_output(style, out) {
    irc::IrcView& pane = m_runtime.Logic().Irc().View();
    pane.PaneLineAdded = [this](const irc::PaneLine& line) { m_output.PrintPaneLine(line); };
    pane.OwnLineSent = [this](const std::string& target, const std::string& text) {
        m_output.PrintOwnLine(target, text);
    };
    // ShowErrorNumerics: the server's refusals (a bad user name, a banned host) on standard error.
    pane.ServerErrorShown = [](int numeric, const std::string& text) {
        std::fprintf(stderr, "IRC server error %d: %s\n", numeric, text.c_str());
        std::fflush(stderr);
    };
    connect(&m_runtime, &AppRuntime::ViewChanged, this,
            [this] { m_output.PrintViewChanges(m_runtime.Logic().View()); });
}

HeadlessRunner::~HeadlessRunner() {
    m_runtime.Logic().Irc().View().PaneLineAdded = nullptr;
    m_runtime.Logic().Irc().View().OwnLineSent = nullptr;
    m_runtime.Logic().Irc().View().ServerErrorShown = nullptr;
}

bool HeadlessRunner::CatchSignals() {
    if (g_signalPipe[0] < 0 && ::pipe2(g_signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) return false;
    struct sigaction action {};
    action.sa_handler = OnTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    if (::sigaction(SIGINT, &action, nullptr) != 0 || ::sigaction(SIGTERM, &action, nullptr) != 0) return false;
    m_signals = std::make_unique<QSocketNotifier>(g_signalPipe[0], QSocketNotifier::Read);
    connect(m_signals.get(), &QSocketNotifier::activated, this, &HeadlessRunner::OnSignal);
    return true;
}

void HeadlessRunner::Start(const std::string& pendingCommand) {
    MainLogic& logic = m_runtime.Logic();
    const AppSettings& s = logic.Settings();
    if (!s.IrcServer[1].empty() && s.IrcPort[1] != 0 && !s.IrcChannel[1].empty() && !s.IrcNick[1].empty() &&
        logic.View().cmdIRCConnectionCaption == "&Connect")
        logic.cmdIRCConnection_Click();
    if (!s.GameHost[1].empty() && !logic.Query().IsRunning()) logic.cmdGamQuery_Click();
    if (!pendingCommand.empty()) logic.HandleRemote(pendingCommand);
}

void HeadlessRunner::OnSignal() {
    char drained[16];
    while (::read(g_signalPipe[0], drained, sizeof drained) > 0) {
    }
    m_signals->setEnabled(false);
    m_runtime.Shutdown();
    QCoreApplication::exit(0);
}

} // namespace tallybot::app
