#pragma once
// Running without a window: every pane line goes to standard output at once, IRC and the game
// query start from the first history entries, and SIGINT/SIGTERM run the normal shutdown.

#include "app/qt/app_runtime.h"
#include "app/qt/headless_output.h"

#include <cstdio>
#include <memory>
#include <string>

#include <QObject>
#include <QSocketNotifier>

namespace tallybot::app {

class HeadlessRunner final : public QObject {
    Q_OBJECT
public:
    // style: terminal colours, plain UTF-8 or the pane's bytes (pane_text.h).
    HeadlessRunner(AppRuntime& runtime, OutputStyle style, std::FILE* out = stdout, QObject* parent = nullptr);
    ~HeadlessRunner() override;

    // Routes SIGINT and SIGTERM to this runner; call once, before Start.
    bool CatchSignals();
    // After MainLogic::Main: connects what the histories name, then runs the pending command once.
    void Start(const std::string& pendingCommand);

private:
    void OnSignal();

    AppRuntime& m_runtime;
    HeadlessOutput m_output;
    std::unique_ptr<QSocketNotifier> m_signals;
};

} // namespace tallybot::app
