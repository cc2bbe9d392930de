#include "zelModelSupport/graphics/scene/ZelSceneStateIdentity.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/Sdc.h"

#include <QPointer>

#include <utility>

namespace zel::state {

struct Identity::Data
{
    QPointer<Sdc> object;
    QString psiimId;
};

/// Lives with a component and keeps its identity up to date.
class Identity::Link : public QObject
{
public:
    static Link *of(Sdc *sdc)
    {
        for (QObject *child : std::as_const(sdc->QObject::children())) {
            if (auto *const link = dynamic_cast<Link *>(child))
                return link;
        }
        return new Link(sdc);
    }

    // Not all that sets an id says so.
    const std::shared_ptr<Data> &data()
    {
        follow(m_sdc->getPsiimId());
        return m_data;
    }

    void set(std::shared_ptr<Data> data) { m_data = std::move(data); }

private:
    explicit Link(Sdc *sdc) : QObject(sdc), m_sdc(sdc), m_data(new Data{sdc, sdc->getPsiimId()})
    {
        connect(sdc, &Sdc::propertyChanged, this, [this](int key, const QString &value) {
            if (key == SdcProperty::PsiimId)
                follow(value);
        });
    }

    void follow(const QString &psiimId)
    {
        if (m_data->psiimId == psiimId)
            return;
        // An id that is not stored, as after a save that has failed, said nothing.
        if (isLookedUpAndStored(m_data->psiimId))
            m_data.reset(new Data{m_sdc, psiimId});
        else
            m_data->psiimId = psiimId;
    }

    bool isLookedUpAndStored(const QString &psiimId) const
    {
        const ZelDbSqliteModel *const db = m_sdc->getZelDbSqliteModel();
        if (!db || psiimId.isEmpty())
            return false;
        if (m_sdc->isSdcCpx())
            return !db->cpxGetHashInfo(psiimId).isEmpty();
        if (m_sdc->isSdcMli())
            return !db->mliGetHashInfo(psiimId).isEmpty();
        return m_sdc->isSdcCxi() && !db->caiGetHashInfo(psiimId).isEmpty();
    }

    Sdc *m_sdc;
    std::shared_ptr<Data> m_data;
};

Identity Identity::of(Sdc *sdc)
{
    return sdc ? Identity(Link::of(sdc)->data()) : Identity();
}

void Identity::renew(Sdc *sdc)
{
    Link::of(sdc)->set(std::shared_ptr<Data>(new Data{sdc, sdc->getPsiimId()}));
}

bool Identity::isOf(Sdc *sdc) const
{
    return sdc && m_data && Link::of(sdc)->data() == m_data;
}

Sdc *Identity::object() const
{
    return m_data ? m_data->object.data() : nullptr;
}

QString Identity::psiimId() const
{
    return m_data ? m_data->psiimId : QString();
}

void Identity::passTo(Sdc *sdc) const
{
    const QString id = psiimId();
    if (m_data && (!m_data->object || m_data->object == sdc)) {
        m_data->object = sdc;
        Link::of(sdc)->set(m_data);
    } else {
        renew(sdc);
    }
    sdc->setProperty(SdcProperty::PsiimId, id);
}

} // namespace zel::state
