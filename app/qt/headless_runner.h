#pragma once
// Running without a window: every pane line goes to standard output at once, IRC and the game
// query start from the first history entries, and SIGINT/SIGTERM run the normal shutdown.

#include "app/qt/app_runtime.h"

#include <cstdio>
#include <memory>
#include <string>

#include <QObject>
#include <QSocketNotifier>

namespace tallybot::app {

class HeadlessRunner final : public QObject {
    Q_OBJECT
public:
    // ansi: render IRC colours as terminal colours; otherwise lines are written as the pane holds
    // them, control characters included.
    HeadlessRunner(AppRuntime& runtime, bool ansi, std::FILE* out = stdout, QObject* parent = nullptr);
    ~HeadlessRunner() override;

    // Routes SIGINT and SIGTERM to this runner; call once, before Start.
    bool CatchSignals();
    // After MainLogic::Main: connects what the histories name, then runs the pending command once.
    void Start(const std::string& pendingCommand);

private:
    void OnSignal();

    AppRuntime& m_runtime;
    bool m_ansi;
    std::FILE* m_out;
    std::unique_ptr<QSocketNotifier> m_signals;
    std::string m_shownStatus = "OFFLINE";
};

} // namespace tallybot::app
