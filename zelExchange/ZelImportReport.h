#pragma once

#include "zelExchange/ZelExchangeExport.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What an import brought in, and what it could not say in the model's own terms.
struct ZELEXCHANGE_EXPORT ZelImportReport
{
    /// A part of the file that is not in the model as what it is there.
    struct Loss
    {
        int line = 0; ///< counted from 1; 0 when it concerns the whole file
        QString text; ///< as it stands in the file
        QString reason;
        bool isKept = false; ///< whole, among the untranslated items
    };

    QString fileName;
    QString error; ///< why nothing was imported; empty after success
    int moleculeTypes = 0;
    int components = 0;
    int sites = 0;
    int features = 0;
    int interactions = 0; ///< pairs of sites that rules join
    int complexes = 0;
    int species = 0;
    int patterns = 0; ///< aliases that only reactions use
    int associations = 0;
    int dissociations = 0;
    int transformations = 0;
    int productions = 0;
    int degradations = 0;
    int parameters = 0;
    int observables = 0;
    int compartments = 0;
    QList<Loss> losses;

    int untranslated() const;
    QString toText() const;
    QByteArray toJson() const;
};
