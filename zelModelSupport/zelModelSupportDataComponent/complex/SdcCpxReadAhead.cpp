#include "zelModelSupport/zelModelSupportDataComponent/complex/SdcCpxReadAhead.h"

#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QVarLengthArray>

namespace {

constexpr int SiteDepth = 2; // of sites below their molecule
constexpr int CacheLine = 64;

} // namespace

void SdcCpxReadAhead::parts(const QList<SdcMol *> &mols)
{
    QVarLengthArray<const Sdc *, 64> level(mols.cbegin(), mols.cend());
    for (int i = 0; i <= SiteDepth; ++i) {
        for (const Sdc *sdc : std::as_const(level)) {
            if (!sdc)
                continue;
            __builtin_prefetch(sdc);
            __builtin_prefetch(&sdc->m_psiimId);
            __builtin_prefetch(reinterpret_cast<const char *>(&sdc->m_psiimId) + CacheLine);
        }
        if (i == SiteDepth)
            break;
        for (const Sdc *sdc : std::as_const(level)) {
            if (sdc)
                __builtin_prefetch(sdc->m_children.constData());
        }
        QVarLengthArray<const Sdc *, 64> below;
        for (const Sdc *sdc : std::as_const(level)) {
            if (sdc)
                below.append(sdc->m_children.constData(), sdc->m_children.size());
        }
        level = below;
    }
}

void SdcCpxReadAhead::properties(const Sdc *sdc)
{
    __builtin_prefetch(sdc->m_properties.data());
}
