#include "enduranceconfig.h"

#include <QDir>
#include <QFile>

namespace {

// The first cycles fill Qt's caches (glyphs, style sheet rules, pixmaps):
// measured, the heap settles within about forty.
constexpr int MinWarmUp = 40;
constexpr int LongIdleSeconds = 600;

int fromEnvironment(const char *name, int fallback, int minimum)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? qMax(minimum, value) : fallback;
}

} // namespace

EnduranceConfig EnduranceConfig::fromEnvironment()
{
    EnduranceConfig config;
    config.cycles = ::fromEnvironment("ENDURANCE_CYCLES", config.cycles, 1);
    config.warmUpCycles = ::fromEnvironment("ENDURANCE_WARMUP", config.warmUpCycles, 0);
    // Fewer switches give too few samples to tell growth from noise.
    config.languageSwitches = ::fromEnvironment("ENDURANCE_SWITCHES", config.languageSwitches, 150);
    config.idleSeconds = ::fromEnvironment("ENDURANCE_IDLE_SECONDS", config.idleSeconds, 1);
    config.idleSampleMs = ::fromEnvironment("ENDURANCE_IDLE_SAMPLE_MS", config.idleSampleMs, 10);
    config.outDir = qEnvironmentVariable("ENDURANCE_OUT");
    return config;
}

int EnduranceConfig::warmUp() const
{
    if (warmUpCycles >= 0)
        return qMin(warmUpCycles, cycles);
    return qMin(cycles / 2, qMax(MinWarmUp, cycles / 10));
}

int EnduranceConfig::idleWarmUpSamples() const
{
    return qMax(2, idleSamples() / 10);
}

bool EnduranceConfig::longIdle() const
{
    return idleSeconds >= LongIdleSeconds;
}

int EnduranceConfig::idleSamples() const
{
    return qMax(1, int(qint64(idleSeconds) * 1000 / idleSampleMs));
}

QString EnduranceConfig::csvPath(const QString &name) const
{
    if (outDir.isEmpty() || !QDir().mkpath(outDir))
        return QString();
    return QDir(outDir).filePath(name);
}

CsvFile::CsvFile(const QString &path, const QString &header)
{
    if (path.isEmpty())
        return;
    m_file = std::fopen(QFile::encodeName(path).constData(), "we");
    if (!m_file) {
        qWarning("cannot write %s", qPrintable(path));
        return;
    }
    write(header);
}

CsvFile::~CsvFile()
{
    if (m_file)
        std::fclose(m_file);
}

void CsvFile::write(const QString &line)
{
    if (!m_file)
        return;
    std::fprintf(m_file, "%s\n", line.toLocal8Bit().constData());
    std::fflush(m_file);
}

void saveMemoryMap(const EnduranceConfig &config, const QString &name)
{
    const QString path = config.csvPath(name);
    if (path.isEmpty())
        return;
    QFile map(QStringLiteral("/proc/self/smaps"));
    QFile copy(path);
    // The kernel gives the file no size: read it to its end.
    if (map.open(QIODevice::ReadOnly) && copy.open(QIODevice::WriteOnly | QIODevice::Truncate))
        copy.write(map.readAll());
}
