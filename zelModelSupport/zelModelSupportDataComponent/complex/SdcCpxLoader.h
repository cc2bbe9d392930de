#pragma once

#include "zelDb/ZelDbTypes.h"
#include "zelModelSupport/zelModelSupportDataComponent/storage/SdcMolType.h"

#include <QPointF>

class SdcCpx;
class ZelScene;

/// Builds a complex from its records and its layout, with the items of its molecules.
class SdcCpxLoader
{
public:
    /// Without a scene the items are made in none; with limited, sites are drawn as limited.
    SdcCpxLoader(SdcCpx *cpx, SdcMolType::Reader *types, ZelScene *scene, const QPointF &refPos,
        bool limited);

    /// Makes all but the bonds. False, reported, when there is no such complex.
    bool load(const QString &psiimId, const SdcLayout &layout);
    /// The same with the layout that is stored beside the record, and with the bonds.
    bool loadAsStored(const QString &psiimId);

    /// Null, reported unless the text is empty, when it is not readable.
    static SdcLayout readLayout(const QString &psiimId, const QString &graphicsInfo);

private:
    ZelDbRecord readRecord(const QString &psiimId) const;
    bool load(const QString &psiimId, const ZelDbRecord &record, const SdcLayout &layout);
    void loadMols(const QString &psiimId, const SdcLayout &layout);

    SdcCpx *m_cpx;
    SdcMolType::Reader *m_types;
    ZelScene *m_scene;
    QPointF m_refPos;
    bool m_limited;
};
