#pragma once

#include <QHash>
#include <QString>

/// One stored record: column number (ZelDbColumn) to text; absent columns read as empty texts.
using ZelDbRecord = QHash<int, QString>;

/// Binding status of a binding site, as stored and as patterns demand it.
enum BindingStatusType : int {
    BindingStatusUnspecified = 1, ///< shown "Don't Care"
    BindingStatusBound = 2, ///< shown "Bound"
    BindingStatusUnbound = 4 ///< shown "Unbound"
};

/// State of a feature of a molecule component, as stored and as patterns demand it.
enum ComponentStateType : int {
    ComponentStateOff = 1, ///< negated: written "(-)" in state codes
    ComponentStateOn = 2, ///< set: written as the bare name
    ComponentStateDontCare = 4 ///< unset: written "(0)"
};

/// Column numbers of the model database. They are common to all record kinds.
namespace ZelDbColumn {
enum Column : int {
    PsiimId = 0, ///< identifier; all records
    RowNumber = 1,
    GraphicsInfo = 2, ///< layout XML; mol, mli, cpx, cai
    PosIndex = 3, ///< position among the owner's children; mcp, bst, mcpState
    ShortName = 4,
    Name = 5,
    CpxText = 6, ///< pass-through text of a complex
    CpxFingerPrint = 7,
    Notes = 8,
    CpxMolCode = 9,
    CpxFlag = 10,
    OwnerPsiimId = 11, ///< molecule of a component, component of a site or state
    StateColor = 12,
    AssociationRate = 13,
    DissociationRate = 14,
    MolNumber15 = 15,
    MolNumber16 = 16,
    MolNumber18 = 18, ///< shown in scientific form
    CpaCpx = 19, ///< complex of an alias
    CaiCpa1 = 20,
    CaiCpa2 = 21,
    CpaKey2 = 22, ///< second key of an alias
    CaiResultCpa = 23,
    CadSourceCpa = 24,
    CadResultCpa1 = 25,
    CadResultCpa2 = 26,
    TrnFromCpa = 27,
    TrnToCpa = 28,
    Rate = 29,
    CpaStateCode = 30,
    CpaShortName = 31,
    CpaShown = 32, ///< "1" shown, "0" not
    CpaWellDefined = 33, ///< "1" or "0"
    Bst1 = 34,
    MolPos1 = 35,
    Bst2 = 36,
    MolPos2 = 37,
    Color = 39,
    BindingType = 40, ///< cis, trans
    Location = 46,
    Geometry = 48, ///< "2D", "3D", other
    GeometryText = 49, ///< may contain "Intra Complex"
    DegradationRate = 50,
    DegradationCpa = 51,
    PdnSourceCpa = 60,
    PdnProductCpa = 61,
    PdnDelay = 62,
    PdnM = 63,
    PdnN = 64,
    PdnK = 65,
    StateGroup = 70, ///< states of a component with one non-empty group exclude each other
    ParameterValue = 71, ///< number or expression, as given
    Unit = 72,
    ObservableKind = 73, ///< what is counted, in the words of the file that gave it
    ObservablePattern = 74,
    SeedCpa = 75,
    SeedAmount = 76, ///< number or expression, as given
    CompartmentDimension = 77,
    CompartmentSize = 78,
    CompartmentParent = 79, ///< psiimId of the surrounding compartment
    SourceFile = 80,
    SourceLine = 81, ///< counted from 1
    SourceText = 82, ///< the untranslated item, whole
    Reason = 83, ///< why the item could not be translated
    CopyGroup = 84 ///< components of a molecule with one non-empty group are copies of each other
};
}

/// Property keys of data components. Numbers that equal a column's do so by accident.
namespace SdcProperty {
enum Key : int {
    PsiimId = 1,
    ShortName = 2, ///< emptied whenever the component's name is set
    Name = 3,
    MolNumber16 = 4,
    MolNumber18 = 5,
    MolNumber15 = 6,
    StateCode = 9, ///< of a component; pass-through text of a complex
    CpxText = 9,
    Negation = 10, ///< "1" = the component is negated
    Notes = 11,
    AssociationRate = 15,
    DissociationRate = 16,
    CpaShortName = 17,
    CpaPsiimId = 18,
    ResultCpaPsiimId = 19,
    Color = 20,
    References = 21,
    CpaKey2 = 22,
    BindingType = 23,
    Location = 25,
    Geometry = 26,
    GeometryText = 27,
    Rate = 29 ///< of a transformation
};
}

/// The values of property Location.
namespace ZelLocation {
inline constexpr char MembraneAssociated[] = "Membrane Associated";
inline constexpr char FreelyDiffusing[] = "Freely Diffusing";
inline constexpr char InsideMembrane[] = "Inside-membrane";
} // namespace ZelLocation

/// The values of property Geometry: where two complexes find each other.
namespace ZelGeometry {
inline constexpr char Plane[] = "2D"; ///< within the membrane
inline constexpr char Space[] = "3D";
inline constexpr char IntraComplex[] = "Intra Complex"; ///< both sites lie in one complex
} // namespace ZelGeometry
