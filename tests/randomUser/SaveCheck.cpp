#include "SaveCheck.h"

#include "RandomModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBst.h"

namespace {

void collectIds(Sdc *sdc, QSet<QString> *ids)
{
    ids->insert(sdc->getPsiimId());
    ids->insert(sdc->getProperty(SdcProperty::CpaPsiimId));
    for (Sdc *child : sdc->getListSdcChildren())
        collectIds(child, ids);
    for (SdcBst *site : sdc->getListSdcBst()) {
        for (SdcBstBst *bond : site->getListSdcBstBst())
            ids->insert(bond->getPsiimId());
    }
}

} // namespace

SaveCheck::SaveCheck(RandomModel *model, Sdc *sdc)
    : m_model(model), m_rows(model->rows()), m_findings(model->findings())
{
    collectIds(sdc, &m_read);
}

QString SaveCheck::fault(const QStringList &tolerated) const
{
    const QString lost = overwritten();
    if (!lost.isEmpty())
        return lost;
    for (const QString &finding : m_model->findings()) {
        if (!m_findings.contains(finding) && !tolerated.contains(finding.section(u':', 0, 0)))
            return QLatin1String("a save adds what a check of the model finds: ") + finding;
    }
    return {};
}

/// What the drawing had not read it cannot know.
QString SaveCheck::overwritten() const
{
    const auto rows = m_model->rows();
    for (auto row = m_rows.cbegin(); row != m_rows.cend(); ++row) {
        if (m_read.contains(row.key()))
            continue;
        const QMap<QString, QString> now = rows.value(row.key());
        for (auto field = row->cbegin(); field != row->cend(); ++field) {
            if (!field->isEmpty() && now.value(field.key()) != *field)
                return QStringLiteral("a save overwrites %1, which the drawing had not read: %2 is "
                                      "\"%3\" and was \"%4\"")
                    .arg(row.key(), field.key(), now.value(field.key()), *field);
        }
    }
    return {};
}
