#include "app/qt/headless_runner.h"

#include "app/logic/pane_text.h"

#include <csignal>
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

HeadlessRunner::HeadlessRunner(AppRuntime& runtime, bool ansi, std::FILE* out, QObject* parent)
    : QObject(parent), m_runtime(runtime), m_ansi(ansi), m_out(out) {
    m_runtime.Logic().Irc().View().PaneLineAdded = [this](const irc::PaneLine& line) {
        const std::string text = m_ansi ? RenderAnsi(line) : line.Raw;
        std::fwrite(text.data(), 1, text.size(), m_out);
        std::fputc('\n', m_out);
        std::fflush(m_out);
    };
    // ShowErrorNumerics: the server's refusals (a bad user name, a banned host) on standard error.
    m_runtime.Logic().Irc().View().ServerErrorShown = [](int numeric, const std::string& text) {
        std::fprintf(stderr, "IRC server error %d: %s\n", numeric, text.c_str());
        std::fflush(stderr);
    };
    // Without a window the query status label is the one thing an operator cannot see: it goes
    // to standard error whenever it changes.
    connect(&m_runtime, &AppRuntime::ViewChanged, this, [this] {
        const std::string& status = m_runtime.Logic().View().Query.lblQueryStatusCaption;
        if (status == m_shownStatus) return;
        m_shownStatus = status;
        std::fprintf(stderr, "Game server: %s\n", status.c_str());
        std::fflush(stderr);
    });
}

HeadlessRunner::~HeadlessRunner() {
    m_runtime.Logic().Irc().View().PaneLineAdded = nullptr;
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
