#pragma once

#include <QString>

#include <benchmark/benchmark.h>

/// Benchmarks whose figures are ratios of two measurements of one run.
namespace ZelBenchmark {

/// After the run, prints the median time of one benchmark over that of the other, each divided by
/// its number of units, and whether it keeps the limit. The names are those that the run shows;
/// "name#counter" takes a counter of the run in place of its time.
bool ratio(const char *title, const char *measured, const char *reference, double limit,
    double measuredUnits = 1.0, double referenceUnits = 1.0);

/// For a measurement that cannot be prepared: ends the process, saying why.
[[noreturn]] void giveUp(const QString &why);

} // namespace ZelBenchmark
