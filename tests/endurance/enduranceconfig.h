#ifndef ENDURANCECONFIG_H
#define ENDURANCECONFIG_H

#include <QString>

#include <cstdio>

// How long the endurance suite runs, from the environment (see
// tst_endurance.cpp); the defaults are the short run of every test pass.
struct EnduranceConfig {
    int cycles = 80;
    int warmUpCycles = -1;      // -1: a tenth of the cycles, at least 40
    int languageSwitches = 300;
    int idleSeconds = 6;
    int idleSampleMs = 500;
    QString outDir;

    static EnduranceConfig fromEnvironment();
    int warmUp() const;
    int idleSamples() const;
    int idleWarmUpSamples() const;
    // Long enough to hold the idle heap to the per-minute limit.
    bool longIdle() const;
    // Empty when no output folder was given.
    QString csvPath(const QString &name) const;
};

// Copies the kernel's map of this process's memory (/proc/self/smaps) to
// the output folder, so that a long run can tell which mapping held on to
// resident pages. Nothing without an output folder.
void saveMemoryMap(const EnduranceConfig &config, const QString &name);

// A CSV file written line by line as samples arrive, so a long run that is
// stopped early still leaves its figures. Does nothing without a path.
class CsvFile
{
public:
    CsvFile(const QString &path, const QString &header);
    ~CsvFile();
    CsvFile(const CsvFile &) = delete;
    CsvFile &operator=(const CsvFile &) = delete;
    void write(const QString &line);

private:
    std::FILE *m_file = nullptr;
};

#endif // ENDURANCECONFIG_H
