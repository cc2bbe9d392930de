#pragma once

#include "zelDb/ZelDbExport.h"
#include "zelDb/ZelDbTypes.h"

#include <QList>
#include <QString>

class ZelDbSqliteModel;

/// What holds for every model database: identifiers and the binding statuses.
namespace ZelDb {

/// Kinds of records; the numbers 0 to 5 are those of the data components.
enum RecordType : int {
    Bst = 0,
    Mcp = 1,
    Mol = 2,
    Mli = 3,
    Cpx = 4,
    Cai = 5,
    Cpa = 30,
    Cad = 31,
    Trn = 32,
    Pdn = 33,
    Deg = 34,
    McpState = 35,
    Parameter = 36,
    Observable = 37,
    Seed = 38,
    Compartment = 39,
    Untranslated = 40
};

/// A new identifier, tag and running number ("mol12"): never one that the file holds or held.
/// Empty without an open, writable database or for an unknown type; the model's errorText() says
/// why.
ZELDB_EXPORT QString getNewSdcPsiimId(int type, ZelDbSqliteModel *model);

/// All values of BindingStatusType in ascending order.
ZELDB_EXPORT QList<int> getListBindingStatusType();

} // namespace ZelDb
