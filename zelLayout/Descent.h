#pragma once

#include <functional>
#include <vector>

namespace zel::layout {

/// Walks downhill on a function of many variables, with the curvature remembered from the last
/// steps (limited-memory BFGS).
class Descent
{
public:
    /// The value at a point; fills the gradient, which has the point's size.
    using Function = std::function<double(const std::vector<double> &, std::vector<double> *)>;

    /// Moves *x, which must outlive it.
    Descent(std::vector<double> *x, Function function);

    /// False when no step makes it better by a share that counts.
    bool step();

private:
    struct Step
    {
        std::vector<double> x;
        std::vector<double> gradient;
        double inverse = 0.0; // of the curvature
    };

    std::vector<double> direction() const;
    void remember(const std::vector<double> &x, const std::vector<double> &gradient);

    std::vector<double> &m_x;
    Function m_function;
    std::vector<double> m_gradient;
    std::vector<Step> m_steps;
    double m_value = 0.0;
};

} // namespace zel::layout
