#include "sampleseries.h"

#include <algorithm>
#include <QtGlobal>

namespace {

constexpr int WindowDivisor = 5;
constexpr int MinWindow = 3;
constexpr int ColumnWidth = 11;
constexpr double Quantiles[] = {0.1, 0.25, 0.5, 0.75, 0.9};

QString formatted(ProcessSample::Measure measure, qint64 value)
{
    if (ProcessSample::isBytes(measure))
        return QStringLiteral("%1K").arg(double(value) / 1024.0, 0, 'f', 1);
    return QString::number(value);
}

QString bytesText(double bytes)
{
    return QStringLiteral("%1 KiB").arg(bytes / 1024.0, 0, 'f', 2);
}

} // namespace

SampleSeries::SampleSeries(int capacity)
{
    // Written once through, so that its pages are resident from the start
    // and do not show as resident memory the run gains.
    m_samples.resize(size_t(qMax(capacity, 1)));
    m_samples.clear();
}

void SampleSeries::add(const ProcessSample &sample)
{
    m_samples.push_back(sample);
}

SampleSeries::Window SampleSeries::window(ProcessSample::Measure measure, int from, int to) const
{
    Window w;
    w.sorted.reserve(size_t(to - from));
    for (int i = from; i < to; ++i)
        w.sorted.push_back(at(i)[measure]);
    std::sort(w.sorted.begin(), w.sorted.end());
    w.centre = (from + to - 1) / 2.0;
    return w;
}

double SampleSeries::Window::quantile(double q) const
{
    const double at = q * double(sorted.size() - 1);
    const size_t below = size_t(at);
    const size_t above = qMin(below + 1, sorted.size() - 1);
    return double(sorted[below]) + (at - double(below)) * double(sorted[above] - sorted[below]);
}

bool SampleSeries::windows(ProcessSample::Measure measure, int warmUp, Window *first, Window *last) const
{
    const int from = qBound(0, warmUp, size());
    const int count = size() - from;
    if (count < 2 * MinWindow)
        return false;
    const int width = qMax(MinWindow, count / WindowDivisor);
    *first = window(measure, from, from + width);
    *last = window(measure, size() - width, size());
    return true;
}

double SampleSeries::slope(ProcessSample::Measure measure, int warmUp) const
{
    Window first;
    Window last;
    if (!windows(measure, warmUp, &first, &last) || last.centre <= first.centre)
        return 0.0;
    // A leak lifts every quantile of the later samples. A block that is
    // sometimes alive when the sample is taken and sometimes not splits the
    // samples into two levels, and moves a single quantile (the median too)
    // by the whole block as soon as the share of the two levels changes: the
    // shift is taken only as far as all quantiles agree on it.
    double agreed = 0.0;
    for (size_t i = 0; i < sizeof Quantiles / sizeof Quantiles[0]; ++i) {
        const double shift = last.quantile(Quantiles[i]) - first.quantile(Quantiles[i]);
        if (i == 0)
            agreed = shift;
        else if ((shift > 0) != (agreed > 0) || shift == 0)
            return 0.0;
        else
            agreed = qAbs(shift) < qAbs(agreed) ? shift : agreed;
    }
    return agreed / (last.centre - first.centre);
}

double SampleSeries::change(ProcessSample::Measure measure, int warmUp) const
{
    Window first;
    Window last;
    if (!windows(measure, warmUp, &first, &last))
        return 0.0;
    return last.quantile(0.5) - first.quantile(0.5);
}

QStringList SampleSeries::growth(int warmUp, double heapLimit, const QString &step, double stepsPerSample) const
{
    QStringList found;
    const int measured = size() - qBound(0, warmUp, size());
    for (int m = 0; m < ProcessSample::MeasureCount; ++m) {
        const auto measure = ProcessSample::Measure(m);
        if (measure == ProcessSample::ResidentBytes || measure == ProcessSample::HeapHeldBytes)
            continue;   // pages the allocator keeps: reported, not judged
        if (measure == ProcessSample::HeapBytes) {
            const double perStep = slope(measure, warmUp) / stepsPerSample;
            if (perStep >= heapLimit)
                found << QStringLiteral("heap grew by %1 per %2 (limit %3) over %4 samples after the warm-up")
                             .arg(bytesText(perStep), step, bytesText(heapLimit)).arg(measured);
            continue;
        }
        const double gained = change(measure, warmUp);
        if (gained > 0)
            found << QStringLiteral("%1 grew by %2 over %3 samples after the warm-up (%4 -> %5)")
                         .arg(QLatin1String(ProcessSample::name(measure))).arg(gained).arg(measured)
                         .arg(at(qBound(0, warmUp, size() - 1))[measure]).arg(at(size() - 1)[measure]);
    }
    return found;
}

QString SampleSeries::header(const QString &firstColumn)
{
    QString line = firstColumn.leftJustified(8);
    for (int m = 0; m < ProcessSample::MeasureCount; ++m)
        line += QString::fromLatin1(ProcessSample::name(ProcessSample::Measure(m))).rightJustified(ColumnWidth + 1);
    return line;
}

QString SampleSeries::row(const QString &label, const ProcessSample &sample)
{
    QString line = label.leftJustified(8);
    for (int m = 0; m < ProcessSample::MeasureCount; ++m) {
        const auto measure = ProcessSample::Measure(m);
        line += formatted(measure, sample[measure]).rightJustified(ColumnWidth + 1);
    }
    return line;
}

QString SampleSeries::csvHeader(const QString &firstColumn)
{
    QString line = firstColumn + QLatin1String(",seconds");
    for (int m = 0; m < ProcessSample::MeasureCount; ++m)
        line += QLatin1Char(',') + QLatin1String(ProcessSample::name(ProcessSample::Measure(m)));
    return line;
}

QString SampleSeries::csvRow(double step, double seconds, const ProcessSample &sample)
{
    QString line = QString::number(step, 'g', 10) + QLatin1Char(',') + QString::number(seconds, 'f', 3);
    for (qint64 value : sample.values)
        line += QLatin1Char(',') + QString::number(value);
    return line;
}
