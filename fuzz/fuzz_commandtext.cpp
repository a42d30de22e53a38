// Every command pattern of the plug-in, as the audit finds them in the
// sources, with arguments of any value: a command is either invalid, with
// no text, or its text is the pattern with each conversion replaced by a
// text of its kind's grammar, fits its buffer and holds no byte that
// neither the pattern nor the kind's alphabet has. The builder's answer is
// also held against a substitution done here by hand.
#include "argumentgrammar.h"
#include "commandscanner.h"
#include "commandtext.h"
#include "fuzzsupport.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <climits>
#include <string>

namespace {

using Construction = CommandScanner::Construction;

const QVector<Construction> &patterns()
{
    static const QVector<Construction> found = [] {
        QVector<Construction> understood;
        for (const Construction &c : CommandScanner::scanTree(QStringLiteral(PLUGIN_SOURCE_DIR))) {
            if (c.problem.isEmpty())
                understood.append(c);
        }
        FUZZ_CHECK(understood.size() >= 40, QByteArray(PLUGIN_SOURCE_DIR));
        return understood;
    }();
    return found;
}

// The texts people and files put where a program wants an argument.
const char *const Samples[] = {
    "eth0", "eth1", "wlan0", "ppp0", "lo", "eth2", "192.168.1.1", "0.0.0.0", "255.255.255.255",
    "256.0.0.1", "1.2.3", "...", "1.2.3.4;reboot", "long", "short", "www.baidu.com", "-rf", "a b",
    "$(reboot)", "`reboot`", "a|b", "a&b", "a>b", "a<b", "'", "\"", "\\", "\n", "01.002.3.4",
};

const long long Extremes[] = {0, 1, 2, -1, -2, 255, 256, INT_MAX, INT_MIN, LLONG_MAX, LLONG_MIN};

std::string text(FuzzedDataProvider &in)
{
    switch (in.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return in.PickValueInArray(Samples);
    case 1: {
        // Four numbers with dots: valid addresses come up often.
        std::string dotted;
        for (int i = 0; i < 4; ++i)
            dotted += (i ? "." : "") + std::to_string(in.ConsumeIntegralInRange(-1, 300));
        return dotted;
    }
    case 2:
        return std::string(size_t(in.ConsumeIntegralInRange(0, 200)), in.ConsumeIntegral<char>());
    default:
        return in.ConsumeRandomLengthString(300);
    }
}

long long number(FuzzedDataProvider &in)
{
    return in.ConsumeBool() ? in.PickValueInArray(Extremes) : in.ConsumeIntegral<long long>();
}

// Adds one argument of `kind` to the command; returns the text the
// builder should place for it, or null when it must refuse it.
QByteArray addArgument(FuzzedDataProvider &in, const QString &kind, CommandText &command)
{
    if (ArgumentGrammar::conversion(kind) == 'd') {
        const long long value = number(in);
        if (kind == QLatin1String("adapter")) {
            const int index = int(qBound<long long>(INT_MIN, value, INT_MAX));
            command.adapter(index);
            return index == 0 || index == 1 ? QByteArray::number(index) : QByteArray();
        }
        if (kind == QLatin1String("processId")) {
            command.processId(value);
            return value > 1 ? QByteArray::number(value) : QByteArray();
        }
        command.number(value);
        return QByteArray::number(value);
    }
    const std::string raw = text(in);
    QByteArray placed(raw.data(), int(raw.size()));
    if (kind == QLatin1String("ipv4")) {
        if (in.ConsumeBool()) {
            command.ipv4(raw);
        } else {
            // As a page's editor hands it over: no NUL survives that path.
            placed = QByteArray(raw.c_str());
            command.ipv4(QString::fromLatin1(placed));
        }
    } else if (kind == QLatin1String("interfaceName")) {
        placed = QByteArray(raw.c_str());
        command.interfaceName(QString::fromLatin1(placed));
    } else {
        placed = QByteArray(raw.c_str());     // a C string ends at its NUL
        command.word(placed.constData());
    }
    return ArgumentGrammar::matches(kind, placed) ? placed : QByteArray();
}

// The pattern with the placed texts, by hand.
QByteArray substituted(const QByteArray &pattern, const QList<QByteArray> &placed)
{
    QByteArray out;
    int next = 0;
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern.at(i) != '%') {
            out += pattern.at(i);
            continue;
        }
        const char conversion = pattern.at(++i);
        out += conversion == '%' ? QByteArray("%") : placed.value(next++);
    }
    return out;
}

QByteArray bytesOf(const QByteArray &pattern, const QStringList &kinds)
{
    QByteArray allowed = pattern;
    for (const QString &kind : kinds)
        allowed += ArgumentGrammar::alphabet(kind);
    return allowed;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzSupport::panelRoot();
    FuzzedDataProvider in(data, size);
    const Construction &c = patterns().at(in.ConsumeIntegralInRange(0, patterns().size() - 1));
    const bool ownCapacity = in.ConsumeIntegralInRange(0, 7) == 0;
    const int capacity = ownCapacity ? in.ConsumeIntegralInRange(-1, 300) : c.capacity;
    CommandText command(c.pattern.constData(), capacity);

    QStringList kinds = c.kinds();
    // Now and then one argument too many or too few, or of another kind.
    const int twist = in.ConsumeIntegralInRange(0, 15);
    if (twist == 0)
        kinds << in.PickValueInArray({QStringLiteral("number"), QStringLiteral("word")});
    else if (twist == 1 && !kinds.isEmpty())
        kinds.removeLast();
    else if (twist == 2 && !kinds.isEmpty())
        kinds[in.ConsumeIntegralInRange(0, kinds.size() - 1)] = ArgumentGrammar::kinds().value(in.ConsumeIntegralInRange(0, 5));

    bool allPlaced = true;
    QList<QByteArray> placed;
    for (const QString &kind : kinds) {
        const QByteArray one = addArgument(in, kind, command);
        allPlaced = allPlaced && !one.isNull();
        placed << one;
    }

    const QByteArray result = command.text();
    const QByteArray report = c.pattern + " -> " + result;
    if (!command.isValid()) {
        FUZZ_CHECK(result.isEmpty(), report);
        FUZZ_CHECK(!command.errorString().isEmpty(), report);
        // Right kinds, right count, every value good: only the buffer may refuse.
        if (allPlaced && kinds == c.kinds())
            FUZZ_CHECK(substituted(c.pattern, placed).size() >= capacity, report);
        return 0;
    }
    FUZZ_CHECK(allPlaced, report);
    FUZZ_CHECK(ArgumentGrammar::conforms(c.pattern, kinds, result), report);
    FUZZ_CHECK(result == substituted(c.pattern, placed), report);
    FUZZ_CHECK(result.size() < capacity, report);
    const QByteArray allowed = bytesOf(c.pattern, kinds);
    for (const char byte : result)
        FUZZ_CHECK(allowed.contains(byte), report);
    return 0;
}
