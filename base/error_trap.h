#pragma once
// The error-trap convention: a handler's body runs inside Trap(); an exception becomes one Log()
// entry naming the procedure and its module, with showMessage set, and the program goes on.

#include "base/app_log.h"
#include "base/vb_convert.h"

#include <exception>
#include <string>

namespace tallybot::base {

template <class Body>
bool Trap(clsAppLog* log, const char* module, const char* procedure, Body&& body, bool showMessage = true) {
    try {
        body();
        return true;
    } catch (const vb::VbError& e) {
        if (log) log->Log(module, procedure, e.Number(), e.what(), showMessage);
    } catch (const std::exception& e) {
        if (log) log->Log(module, procedure, 1000, e.what(), showMessage); // 1000: application-defined
    }
    return false;
}

// Resume-next for parsers: a failed statement is abandoned, the rest goes on.
template <class Statement> void ResumeNext(Statement&& statement) noexcept {
    try {
        statement();
    } catch (...) {
    }
}

} // namespace tallybot::base
