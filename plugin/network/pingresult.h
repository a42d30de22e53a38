#ifndef PINGRESULT_H
#define PINGRESULT_H

#include <QByteArray>
#include <QString>

// The outer-network test's result file, filled by a ping in the background.
namespace PingResult {

enum State { Missing, Failed, Succeeded };

// A reply line carries "ttl" in lower case; an empty file, or one without
// it (an upper-case "TTL" included), is a failure.
State evaluate(const QByteArray &content);

// Reads at most the first MaxSize bytes of `path` (relative to the
// working directory, as the ping writes it).
State read(const QString &path);

constexpr qint64 MaxSize = 64 * 1024;

} // namespace PingResult

#endif // PINGRESULT_H
