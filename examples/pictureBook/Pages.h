#pragma once

#include "Page.h"

#include <QList>

QList<Page> moleculePages(); ///< the first one is the cover
QList<Page> featurePages();
QList<Page> sitePages();
QList<Page> bondPages();
QList<Page> reactionPages();
