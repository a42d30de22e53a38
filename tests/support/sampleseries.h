#ifndef SAMPLESERIES_H
#define SAMPLESERIES_H

#include "processsampler.h"

#include <QString>
#include <QStringList>
#include <vector>

// Samples taken at equal steps (window cycles, or idle intervals), and the
// judgement whether anything grows with the number of steps.
class SampleSeries
{
public:
    // Room for every sample is taken up front: a series that grew while it
    // recorded would show its own growth in the memory it measures.
    explicit SampleSeries(int capacity);

    void add(const ProcessSample &sample);
    int size() const { return int(m_samples.size()); }
    const ProcessSample &at(int step) const { return m_samples.at(size_t(step)); }

    // Change per step after the first warmUp steps: how far the first and
    // the last fifth of those samples lie apart, over the distance between
    // them. Compared by quantiles (tenth, quarter, median, three quarters,
    // nine tenths) and counted only as far as all of them agree, so that
    // allocator noise, a lone outlier or a block that is alive at some
    // samples and not at others pass without hiding a steady climb.
    double slope(ProcessSample::Measure measure, int warmUp) const;
    // The difference of the two fifths' medians: what a count gained.
    double change(ProcessSample::Measure measure, int warmUp) const;

    // One message per measure that grew after the warm-up: a count whose
    // median rose, or heap growing by heapLimit bytes per step or more.
    // Empty when nothing grew. step names the unit ("cycle", "minute"), and
    // stepsPerSample converts samples into it.
    QStringList growth(int warmUp, double heapLimit, const QString &step, double stepsPerSample = 1.0) const;

    static QString header(const QString &firstColumn);
    static QString row(const QString &label, const ProcessSample &sample);
    // Comma-separated, plain numbers (bytes as bytes), for charts.
    static QString csvHeader(const QString &firstColumn);
    static QString csvRow(double step, double seconds, const ProcessSample &sample);

private:
    struct Window {
        std::vector<qint64> sorted;
        double centre = 0.0;
        double quantile(double q) const;
    };
    Window window(ProcessSample::Measure measure, int from, int to) const;
    bool windows(ProcessSample::Measure measure, int warmUp, Window *first, Window *last) const;

    std::vector<ProcessSample> m_samples;
};

#endif // SAMPLESERIES_H
