#pragma once

#include <QBrush>
#include <QColor>
#include <QPen>
#include <Qt>

/// Sizes, pens, z-values and fonts of the drawing, in scene units and points.
namespace zel::drawing {

/// Z-values of an item relative to the item that it belongs to, unless said otherwise.
namespace z {
inline constexpr double Contact = -2.0; ///< absolute: behind all molecules
inline constexpr double Backbone = -1.0; ///< below the component that is the line's parent
inline constexpr double Halo = -1.0;
inline constexpr double Label = 0.2; ///< on top of the toolkit's default
inline constexpr double StatusMark = -0.1; ///< relative to the label
inline constexpr double Ring = 1.0;
inline constexpr double Sticky = 2.0;
inline constexpr double NotIndicator = 3.0;
inline constexpr double BondCpx = 3.0; ///< absolute, before the line is first laid
inline constexpr double Bond = 4.0; ///< absolute: bonds lie on top of the ellipses
inline constexpr double NameLabel = 5.0; ///< absolute: names of molecules and complexes
} // namespace z

inline constexpr double HaloGrowEllipse = 1.2;
inline constexpr double HaloGrowRect = 1.0;
inline constexpr double HaloPenWidth = 2.0;
inline constexpr double HaloPenWidthRect = 1.0;
inline constexpr double HaloBlurRadius = 2.0;
inline constexpr int HaloCoats = 2;
inline constexpr int HaloCoatsRect = 4; ///< a thin outline blurs to less
inline constexpr double RingShrink = 1.5;
inline constexpr double RingOpacity = 0.7;

inline constexpr double BondTrimStep = 1.0;
inline constexpr double BondCpxHighlightWidth = 2.0;
inline constexpr Qt::GlobalColor BondCpxColor = Qt::blue;

inline constexpr double ContactPenWidth = 0.9;

inline constexpr double BondDrawingPenWidth = 1.5;
inline constexpr double BondDrawingRing = 2.5; ///< around the ends of a bond that is being drawn
inline constexpr double BondDrawingReach = 8.0; ///< from a site's rim, at which the mouse finds it
inline constexpr double BondClickReach = 4.0; ///< from a bond's line, at which a click finds it
inline constexpr double PlacingGap = 6.0; ///< around what a scene finds a place for
inline constexpr double PlacingStep = 20.0;
inline constexpr double EditingRoom = 200.0; ///< around what an editing scene holds

inline constexpr double ResultMargin = 12.0; ///< between the result of an interaction and its frame
inline constexpr double ResultGap = 40.0; ///< between that frame and the complexes
inline constexpr double ResultPenWidth = 1.0;
inline constexpr double ResultTitlePointSize = 9.0;

inline constexpr double NotIndicatorPenWidth = 1.4;
inline constexpr double NotIndicatorOpacity = 0.7;
inline constexpr double NotIndicatorOverhang = 2.0;

inline constexpr double StickySize = 8.0;
inline constexpr double StickyGap = 2.0;
inline constexpr double StickyPenWidth = 1.0;
inline constexpr double StickyPenShare = 0.2; ///< of its side, at which a rim is at most drawn
inline constexpr double StickySizeStep = 0.2;
inline constexpr double StickySizeMin = 0.2;
inline constexpr double StickyRowShare = 0.75; ///< of the ellipse, that a fitted row takes at most
inline constexpr double StickySideShare = 0.3; ///< of the ellipse's lesser extent, likewise
inline constexpr double StickyGapSmall = 1.0;
inline constexpr double StickyGapLimit = 4.0; ///< sides up to this have the small gap
inline constexpr double StickyNoGapLimit = 1.0; ///< sides up to this have no gap
inline constexpr double StickyDontCareOpacity = 0.8;
inline constexpr Qt::GlobalColor StickyColor = Qt::lightGray;

inline constexpr double MarkOpacity = 0.5;
inline constexpr double MarkShrink = 3.0; ///< bound and unbound: diameter less than the site's
inline constexpr double MarkShrinkDontCare = 1.0;
inline constexpr double MarkUnboundPenWidth = 2.0;
inline constexpr double MarkUnboundWiden = 1.0;

inline constexpr int SiteLabelPointSize = 6;
inline constexpr double SiteLabelWidthShare = 0.66; ///< keeps wide labels off the round rim
inline constexpr double SiteLabelHeightShare = 0.85;
inline constexpr double SiteLabelEnlargement = 16.0; ///< of a site while its label is measured
inline constexpr double SiteLabelLeastDeviceHeight = 4.0; ///< pixels; smaller is not legible
inline constexpr int NamePointSize = 16;
inline constexpr double NameVeilRadius = 5.0;
inline constexpr double MolNamePixels = 13.0; ///< of a molecule on a contact map
inline constexpr double PartNamePixels = 7.0; ///< of a component beside which it stands
inline constexpr double SiteNamePixels = 6.0;
inline constexpr int RectTextPointSize = 20;
inline constexpr double RectTextShare = 0.9; ///< of the rectangle, that its text takes at most
inline constexpr double RectTextRim = 2.5; ///< the light rim around the letters

/// The line between two components of a molecule.
inline QPen backbonePen()
{
    return QPen(Qt::DotLine);
}

/// A bond of a complex.
inline QPen bondCpxPen()
{
    return QPen(BondCpxColor);
}

/// A bond that may be: two sites that an interaction joins.
inline QPen contactPen()
{
    return {QColor(BondCpxColor), ContactPenWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

/// A name on a contact map that stands beside what it names.
inline QColor nameColor()
{
    return {30, 30, 30};
}

/// The strokes over a component that is negated.
inline QPen notIndicatorPen()
{
    return {Qt::black, NotIndicatorPenWidth};
}

/// The rim of a feature's square before it has its colour and state.
inline QPen stickyPen()
{
    return {StickyColor, StickyPenWidth};
}

/// A bond that is being drawn.
inline QColor bondDrawingColor()
{
    return {30, 90, 220};
}

/// A bond that is being drawn to a site where it may not be made.
inline QColor bondRefusedColor()
{
    return {200, 40, 40};
}

/// Behind the result of an interaction.
inline QColor resultGround()
{
    return {245, 245, 245};
}

/// What lies between a name and the drawing below it.
inline QColor nameVeil()
{
    return {255, 255, 255, 200};
}

/// Black or white, whichever reads better on the background.
inline QColor textColorOn(const QColor &background)
{
    const double luminance =
        0.299 * background.redF() + 0.587 * background.greenF() + 0.114 * background.blueF();
    return background.alpha() > 127 && luminance < 0.45 ? QColor(Qt::white) : QColor(Qt::black);
}

/// A shape without brush shows the paper.
inline QColor textColorOn(const QBrush &background)
{
    return background.style() == Qt::NoBrush ? QColor(Qt::black) : textColorOn(background.color());
}

} // namespace zel::drawing
