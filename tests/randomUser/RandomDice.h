#pragma once

#include <QList>

#include <random>

/// The dice of a random user: one seed gives the same throws on every machine.
class RandomDice
{
public:
    explicit RandomDice(quint32 seed) : m_engine(seed) { }

    /// 0 to n - 1; 0 when n is not positive.
    int below(int n)
    {
        const auto thrown = static_cast<quint32>(m_engine());
        return n > 0 ? static_cast<int>(thrown % static_cast<quint32>(n)) : 0;
    }
    bool chance(int percent) { return below(100) < percent; }
    double between(double least, double greatest)
    {
        return least + (greatest - least) * (static_cast<double>(m_engine()) / 4294967295.0);
    }
    /// One of the list; a default value when it is empty.
    template <typename T>
    T anyOf(const QList<T> &list)
    {
        const int index = below(static_cast<int>(list.size()));
        return list.value(index);
    }

private:
    std::mt19937 m_engine;
};
