#include "zelLayout/Descent.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace zel::layout {

namespace {

constexpr std::size_t Memory = 6; // of past steps
constexpr double GreatestMove = 40.0;

double dot(const std::vector<double> &a, const std::vector<double> &b)
{
    return std::inner_product(a.cbegin(), a.cend(), b.cbegin(), 0.0);
}

void addScaled(std::vector<double> *to, const std::vector<double> &what, double factor)
{
    for (std::size_t i = 0; i < to->size(); ++i)
        (*to)[i] += factor * what[i];
}

} // namespace

Descent::Descent(std::vector<double> *x, Function function)
    : m_x(*x), m_function(std::move(function))
{
    m_gradient.resize(m_x.size());
    m_value = m_function(m_x, &m_gradient);
}

bool Descent::step()
{
    std::vector<double> way = direction();
    double slope = dot(way, m_gradient);
    if (!(slope < 0.0)) {
        m_steps.clear();
        way = m_gradient;
        for (double &entry : way)
            entry = -entry;
        slope = -dot(m_gradient, m_gradient);
    }
    double longest = 0.0;
    for (const double entry : way)
        longest = std::max(longest, std::abs(entry));
    if (!(longest > 1.0e-9) || !std::isfinite(longest))
        return false;
    double size = std::min(1.0, GreatestMove / longest);
    if (m_steps.empty())
        size = std::min(size, 5.0 / longest);
    std::vector<double> gradient(m_x.size());
    for (int tries = 0; tries < 12; ++tries, size *= 0.4) {
        std::vector<double> x = m_x;
        addScaled(&x, way, size);
        const double value = m_function(x, &gradient);
        if (!(value <= m_value + 1.0e-4 * size * slope))
            continue;
        remember(x, gradient);
        const double gain = m_value - value;
        m_value = value;
        m_x = std::move(x);
        m_gradient = std::move(gradient);
        return gain > 1.0e-5 * (1.0 + m_value);
    }
    return false;
}

std::vector<double> Descent::direction() const
{
    std::vector<double> way = m_gradient;
    std::vector<double> factors(m_steps.size());
    for (std::size_t i = m_steps.size(); i-- > 0;) {
        factors[i] = m_steps[i].inverse * dot(m_steps[i].x, way);
        addScaled(&way, m_steps[i].gradient, -factors[i]);
    }
    if (!m_steps.empty()) {
        const Step &last = m_steps.back();
        const double scale = 1.0 / (last.inverse * dot(last.gradient, last.gradient));
        for (double &entry : way)
            entry *= scale;
    }
    for (std::size_t i = 0; i < m_steps.size(); ++i) {
        const double back = m_steps[i].inverse * dot(m_steps[i].gradient, way);
        addScaled(&way, m_steps[i].x, factors[i] - back);
    }
    for (double &entry : way)
        entry = -entry;
    return way;
}

void Descent::remember(const std::vector<double> &x, const std::vector<double> &gradient)
{
    Step step{x, gradient, 0.0};
    addScaled(&step.x, m_x, -1.0);
    addScaled(&step.gradient, m_gradient, -1.0);
    const double curvature = dot(step.x, step.gradient);
    if (!(curvature > 1.0e-10))
        return;
    step.inverse = 1.0 / curvature;
    m_steps.push_back(std::move(step));
    if (m_steps.size() > Memory)
        m_steps.erase(m_steps.begin());
}

} // namespace zel::layout
