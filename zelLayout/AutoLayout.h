#pragma once

#include "zelLayout/ZelLayoutExport.h"

#include <QColor>
#include <QList>
#include <QPair>

class SdcCpx;
class SdcMcp;
class SdcMol;
class ZelEllipseItemMcp;
class ZelScene;

/// Draws what has no drawing yet: molecules from their components, complexes from the drawings of
/// their molecules. The same input gives the same drawing in every run.
namespace zel::layout {

/// The component's item, made when there is none; without a scene it is made in none and belongs
/// to the component's molecule, else to the caller. Features need it before they are added.
ZELLAYOUT_EXPORT ZelEllipseItemMcp *makeItem(SdcMcp *mcp, ZelScene *scene);

/// Draws a molecule about the origin: its components in chain order as circles that hold their
/// features, the sites on their rims. Missing items are made as makeItem() does, those that are
/// there are moved and resized. Backbone lines join the pairs of component indices.
ZELLAYOUT_EXPORT void drawMolecule(
    SdcMol *mol, ZelScene *scene, const QList<QPair<int, int>> &backbone);
/// The same with each component joined to the next one.
ZELLAYOUT_EXPORT void drawMolecule(SdcMol *mol, ZelScene *scene);

/// Moves, turns and mirrors whole molecules so that bonded sites face each other and nothing
/// overlaps; the centre of the drawing stays. Components and sites without items are left out.
/// Turning has the effect on features that it has when a user turns a molecule.
ZELLAYOUT_EXPORT void arrangeComplex(SdcCpx *cpx);

/// A light colour for the index-th molecule type, unlike those of its neighbours in the count.
ZELLAYOUT_EXPORT QColor colorAt(int index);
/// The same for features: dark, so that they show on any molecule.
ZELLAYOUT_EXPORT QColor featureColorAt(int index);

} // namespace zel::layout
