#pragma once

#include <QList>

class Sdc;
class SdcMol;

/// Asks the processor for what walks through a complex will read.
///
/// Components lie scattered in memory. A walk that meets each one unprepared spends most of its
/// time waiting; asked for level by level, they arrive together.
class SdcCpxReadAhead
{
public:
    /// The molecules, their components and the sites of these.
    static void parts(const QList<SdcMol *> &mols);
    static void properties(const Sdc *sdc);
};
