#pragma once

// Most procedures go on at the next statement: a step that fails on the
// document, a file or a stream is skipped and the rest still runs. What is
// skipped is written to the log, so no failure vanishes without a trace.
// Only the errors a step can meet there are caught; running out of memory
// and the program's own faults (logic errors) are not a failed step and go
// up to the command's handler, which tells the person.

#include <QLoggingCategory>

#include <stdexcept>

namespace tornelia {

Q_DECLARE_LOGGING_CATEGORY(lcSkipped)

// Runs one step; false when it failed with an Error and was skipped.
// `where` names the procedure in the log.
template <typename Error = std::runtime_error, typename Step>
bool goOnAt(const char* where, Step&& step)
{
    try {
        step();
        return true;
    } catch (const Error& e) {
        qCWarning(lcSkipped, "%s: passo saltato: %s", where, e.what());
        return false;
    }
}

}  // namespace tornelia
