#include "processlookup.h"

#include "commandtext.h"
#include "panelroot.h"
#include "platformlog.h"
#include "processrunner.h"

#include <QtGlobal>

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {
const char ProcessQuery[] = "ps -ef | grep %s|grep -v grep";
constexpr int ProcessCommandSize = 128;
}

namespace ProcessLookup {

CommandText query(const char *name)
{
    return CommandText(ProcessQuery, ProcessCommandSize).word(name);
}

int detectProcess(const char *name)
{
    const CommandText command = query(name);
    if (!command.isValid()) {
        qCDebug(lcPlatform) << "not looking for the process:" << command.errorString();
        return -1;
    }
    const QByteArray text = PanelRoot::command(command.text().constData());
    // Only the first line counts; ps and grep end on the closed pipe.
    char answer[AnswerSize] = {};
    int count = 0;
    if (ProcessRunner::readFrom(text.constData(), answer, AnswerSize, WaitBound::ShellCommand, &count)
        == ProcessRunner::NotStarted) {
        qCDebug(lcPlatform) << "cannot run" << text;
        return -1;
    }
    return pidFromAnswer(answer, count);
}

int pidFromAnswer(const char *answer, int size)
{
    // A terminated copy: the pipe's bytes carry no terminator of their own.
    char line[AnswerSize + 1] = {};
    if (answer && size > 0)
        std::memcpy(line, answer, size_t(qMin(size, AnswerSize)));
    if (!line[0])
        return 1;
    return int(qBound<long>(INT_MIN, std::strtol(line, nullptr, 10), INT_MAX));
}

} // namespace ProcessLookup
