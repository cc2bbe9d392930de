#pragma once

#include <QString>

#include <memory>

class Sdc;

namespace zel::state {

/// Who a part of a state is: the object that it was taken from or made again as, and the id that
/// this object has, or had last.
///
/// All states of one object share its identity: each knows an id that a save has given since, and
/// finds the object that another one has made anew. A complex or interaction that is looked up in
/// the database by what is drawn becomes another one when that takes its id away.
class Identity
{
public:
    /// Of nothing.
    Identity() = default;
    /// Who the component is at present; of nothing for null.
    static Identity of(Sdc *sdc);
    /// Makes the component, which is to hold something else, another one.
    static void renew(Sdc *sdc);

    bool isOf(Sdc *sdc) const;
    /// Null when it is gone.
    Sdc *object() const;
    QString psiimId() const;
    /// Gives the id to a component, and makes it who this is unless another one still is.
    void passTo(Sdc *sdc) const;

    /// Something without id may be anything.
    friend bool operator==(const Identity &a, const Identity &b)
    {
        const QString id = a.psiimId();
        const QString other = b.psiimId();
        return id.isEmpty() || other.isEmpty() || id == other;
    }

private:
    struct Data;
    class Link;
    explicit Identity(std::shared_ptr<Data> data) : m_data(std::move(data)) { }

    std::shared_ptr<Data> m_data;
};

} // namespace zel::state
