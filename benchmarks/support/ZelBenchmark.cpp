#include "support/ZelBenchmark.h"

#include <QApplication>
#include <QByteArray>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

struct Ratio
{
    std::string title;
    std::string measured;
    std::string reference;
    double limit = 0.0;
    double unitRatio = 1.0;
};

std::vector<Ratio> &ratios()
{
    static std::vector<Ratio> list;
    return list;
}

class Reporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &reports) override
    {
        for (const Run &run : reports) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const std::string name = run.run_name.str();
            m_figures[name].push_back(
                run.real_accumulated_time / static_cast<double>(run.iterations));
            for (const auto &[counter, value] : run.counters)
                m_figures[name + '#' + counter].push_back(value);
        }
        ConsoleReporter::ReportRuns(reports);
    }

    /// 0 when it did not run.
    double median(const std::string &name) const
    {
        const auto at = m_figures.find(name);
        if (at == m_figures.end())
            return 0.0;
        std::vector<double> figures = at->second;
        std::sort(figures.begin(), figures.end());
        return figures[figures.size() / 2];
    }

private:
    std::map<std::string, std::vector<double>> m_figures;
};

} // namespace

void ZelBenchmark::giveUp(const QString &why)
{
    std::fprintf(stderr, "no measurement: %s\n", qPrintable(why));
    std::exit(2);
}

bool ZelBenchmark::ratio(const char *title, const char *measured, const char *reference,
    double limit, double measuredUnits, double referenceUnits)
{
    ratios().push_back({title, measured, reference, limit, referenceUnits / measuredUnits});
    return true;
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    bool good = true;
    for (const Ratio &ratio : ratios()) {
        const double measured = reporter.median(ratio.measured);
        const double reference = reporter.median(ratio.reference);
        if (measured <= 0.0 || reference <= 0.0)
            continue;
        const double value = measured / reference * ratio.unitRatio;
        good = good && value <= ratio.limit;
        std::printf("%-60s %8.2f  (at most %g)%s\n", ratio.title.c_str(), value, ratio.limit,
            value <= ratio.limit ? "" : "  TOO MUCH");
    }
    return good ? 0 : 1;
}
