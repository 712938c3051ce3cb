#include "app/qt/headless_shell.h"

#include <cstdio>

namespace tallybot::app {

namespace {

// Message texts carry CR LF line breaks; one line on the terminal reads better.
std::string OneLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        if (c == '\r') continue;
        line += c == '\n' ? ' ' : c;
    }
    return line;
}

} // namespace

void HeadlessShell::ShowMessage(const std::string& text, const std::string& title) {
    std::fprintf(stderr, "%s: %s\n", title.c_str(), OneLine(text).c_str());
    std::fflush(stderr);
}

bool HeadlessShell::AskYesNo(const std::string& text, const std::string& title) {
    std::fprintf(stderr, "%s: %s -> no\n", title.c_str(), OneLine(text).c_str());
    std::fflush(stderr);
    return false;
}

void HeadlessShell::OpenExternal(const std::string& url) {
    std::fprintf(stderr, "Tallybot: not opening %s without a window\n", url.c_str());
    std::fflush(stderr);
}

} // namespace tallybot::app
