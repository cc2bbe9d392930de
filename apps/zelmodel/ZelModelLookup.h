#pragma once

#include "apps/zelmodel/ZelModelKinds.h"

#include <QList>
#include <QString>

class ZelDbSqliteModel;
class ZelModelRun;

/// A record with its kind.
struct ZelModelFound
{
    const ZelModelKind *kind = nullptr;
    ZelDbRecord record;
};

/// Finds records for what a user calls them, and what refers to them.
namespace ZelModelLookup {

/// The record of that id or, when there is none, the one of that name: a molecule before a complex,
/// a complex before a species, in the order of the kinds. False, with a message, when there is
/// none, or several of the kind.
bool find(ZelModelRun &run, const QString &idOrName, bool withPictureOnly, ZelModelFound *found);
/// The line that lists of records show.
QString description(ZelDbSqliteModel *db, const ZelModelFound &found);
/// All records that use the given one.
QList<ZelModelFound> referrers(const ZelDbSqliteModel &db, const ZelModelFound &found);

} // namespace ZelModelLookup
