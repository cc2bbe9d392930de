#include "apps/zelmodel/ZelModelKinds.h"

#include "zelDb/ZelDb.h"
#include "zelDb/ZelDbSqliteModel.h"
#include "zelModelSupport/support/zgs.h"

#include <QStringList>

namespace {

namespace C = ZelDbColumn;

constexpr ZelModelColumn molColumns[] = {
    {C::Location, "location", "Location"},
    {C::Color, "color", "Colour"},
};
constexpr ZelModelColumn mcpColumns[] = {
    {C::OwnerPsiimId, "molecule", "Molecule"},
    {C::PosIndex, "position", "Position"},
    {C::Location, "location", "Location"},
};
constexpr ZelModelColumn stateColumns[] = {
    {C::OwnerPsiimId, "component", "Component"},
    {C::PosIndex, "position", "Position"},
    {C::StateColor, "color", "Colour"},
    {C::StateGroup, "group", "Exclusion group"},
};
constexpr ZelModelColumn bstColumns[] = {
    {C::OwnerPsiimId, "component", "Component"},
    {C::PosIndex, "position", "Position"},
};
constexpr ZelModelColumn mliColumns[] = {
    {C::AssociationRate, "associationRate", "Association rate"},
    {C::DissociationRate, "dissociationRate", "Dissociation rate"},
};
constexpr ZelModelColumn cpxColumns[] = {
    {C::CpxMolCode, "moleculeCode", "Molecules"},
    {C::CpxFingerPrint, "fingerprint", "Fingerprint"},
};
constexpr ZelModelColumn cpaColumns[] = {
    {C::CpaCpx, "complex", "Complex"},
    {C::CpaKey2, "compartments", "Compartments"},
    {C::CpaShown, "shown", "Shown"},
    {C::CpaWellDefined, "wellDefined", "Well defined"},
};
constexpr ZelModelColumn caiColumns[] = {
    {C::CaiCpa1, "reactant1", "First reactant"},
    {C::CaiCpa2, "reactant2", "Second reactant"},
    {C::CaiResultCpa, "product", "Product"},
    {C::AssociationRate, "rate", "Rate"},
    {C::Bst1, "site1", "First site"},
    {C::MolPos1, "moleculePosition1", "First molecule"},
    {C::Bst2, "site2", "Second site"},
    {C::MolPos2, "moleculePosition2", "Second molecule"},
    {C::BindingType, "bindingType", "Binding type"},
    {C::Geometry, "geometry", "Geometry"},
};
constexpr ZelModelColumn cadColumns[] = {
    {C::CadSourceCpa, "reactant", "Reactant"},
    {C::CadResultCpa1, "product1", "First product"},
    {C::CadResultCpa2, "product2", "Second product"},
    {C::DissociationRate, "rate", "Rate"},
    {C::BindingType, "bindingType", "Binding type"},
    {C::GeometryText, "geometry", "Geometry"},
};
constexpr ZelModelColumn trnColumns[] = {
    {C::TrnFromCpa, "reactant", "Reactant"},
    {C::TrnToCpa, "product", "Product"},
    {C::Rate, "rate", "Rate"},
};
constexpr ZelModelColumn pdnColumns[] = {
    {C::PdnSourceCpa, "source", "Source"},
    {C::PdnProductCpa, "product", "Product"},
    {C::PdnM, "m", "m"},
    {C::PdnN, "n", "n"},
    {C::PdnK, "k", "k"},
    {C::PdnDelay, "delay", "Delay"},
};
constexpr ZelModelColumn degColumns[] = {
    {C::DegradationCpa, "reactant", "Reactant"},
    {C::DegradationRate, "rate", "Rate"},
};
constexpr ZelModelColumn parColumns[] = {
    {C::ParameterValue, "value", "Value"},
    {C::Unit, "unit", "Unit"},
};
constexpr ZelModelColumn obsColumns[] = {
    {C::ObservableKind, "counts", "Counts"},
    {C::ObservablePattern, "pattern", "Pattern"},
};
constexpr ZelModelColumn sedColumns[] = {
    {C::SeedCpa, "species", "Species"},
    {C::SeedAmount, "amount", "Amount"},
    {C::Unit, "unit", "Unit"},
};
constexpr ZelModelColumn cmpColumns[] = {
    {C::CompartmentDimension, "dimensions", "Dimensions"},
    {C::CompartmentSize, "size", "Size"},
    {C::Unit, "unit", "Unit"},
    {C::CompartmentParent, "parent", "Surrounded by"},
};
constexpr ZelModelColumn utrColumns[] = {
    {C::SourceFile, "file", "File"},
    {C::SourceLine, "line", "Line"},
    {C::SourceText, "text", "Text"},
    {C::Reason, "reason", "Reason"},
};

constexpr int NotListed = ZelModelKind::NotListed;

constexpr ZelModelKind kinds[] = {
    {ZelDb::Mol, "mol", "molecules", "molecule", zgs::ListedMol, molColumns, nullptr},
    {ZelDb::Mcp, "mcp", "components", "component", NotListed, mcpColumns, nullptr},
    {ZelDb::McpState, "mcpState", "features", "feature", NotListed, stateColumns, nullptr},
    {ZelDb::Bst, "bst", "sites", "site", NotListed, bstColumns, nullptr},
    {ZelDb::Mli, "mli", "interactions", "interaction", zgs::ListedMli, mliColumns, nullptr},
    {ZelDb::Cpx, "cpx", "complexes", "complex", zgs::ListedCpx, cpxColumns, nullptr},
    {ZelDb::Cpa, "cpa", "species", "species", zgs::ListedCpa, cpaColumns, "1"},
    {ZelDb::Cpa, "cpa", "patterns", "pattern", zgs::ListedCpa, cpaColumns, "0"},
    {ZelDb::Cai, "cai", "associations", "association", zgs::ListedCai, caiColumns, nullptr},
    {ZelDb::Cad, "cad", "dissociations", "dissociation", zgs::ListedCad, cadColumns, nullptr},
    {ZelDb::Trn, "trn", "transformations", "transformation", zgs::ListedTrn, trnColumns, nullptr},
    {ZelDb::Pdn, "pdn", "productions", "production", zgs::ListedPdn, pdnColumns, nullptr},
    {ZelDb::Deg, "deg", "degradations", "degradation", NotListed, degColumns, nullptr},
    {ZelDb::Parameter, "par", "parameters", "parameter", NotListed, parColumns, nullptr},
    {ZelDb::Observable, "obs", "observables", "observable", NotListed, obsColumns, nullptr},
    {ZelDb::Seed, "sed", "seeds", "seed", NotListed, sedColumns, nullptr},
    {ZelDb::Compartment, "cmp", "compartments", "compartment", NotListed, cmpColumns, nullptr},
    {ZelDb::Untranslated, "utr", "untranslated", "untranslated item", NotListed, utrColumns,
        nullptr},
};

QStringList values(const ZelDbRecord &record, std::initializer_list<int> columns)
{
    QStringList list;
    for (const int column : columns) {
        if (const QString value = record.value(column); !value.isEmpty())
            list.append(value);
    }
    return list;
}

} // namespace

int ZelModelKind::nameColumn() const
{
    return type == ZelDb::Cpa     ? ZelDbColumn::CpaShortName
        : type == ZelDb::McpState ? ZelDbColumn::Name
                                  : ZelDbColumn::ShortName;
}

bool ZelModelKind::isReaction() const
{
    return type == ZelDb::Cai || type == ZelDb::Cad || type == ZelDb::Trn || type == ZelDb::Pdn
        || type == ZelDb::Deg;
}

bool ZelModelKind::hasPicture() const
{
    return isReaction() || type == ZelDb::Mol || type == ZelDb::Mli || type == ZelDb::Cpx
        || type == ZelDb::Cpa;
}

bool ZelModelKind::holds(const ZelDbRecord &record) const
{
    return !wellDefined
        || (record.value(ZelDbColumn::CpaWellDefined) == QLatin1String("1"))
        == (wellDefined[0] == '1');
}

QList<int> ZelModelKind::readColumns() const
{
    QList<int> list{nameColumn(), ZelDbColumn::Notes};
    if (nameColumn() != ZelDbColumn::Name)
        list.append(ZelDbColumn::Name);
    for (const ZelModelColumn &column : columns)
        list.append(column.column);
    return list;
}

bool ZelModelKind::visit(
    const ZelDbSqliteModel &db, const std::function<bool(const ZelDbRecord &)> &visitor) const
{
    return db.visitRecords(type, readColumns(),
        [&](const ZelDbRecord &record) { return !holds(record) || visitor(record); });
}

std::span<const ZelModelKind> ZelModelKinds::all()
{
    return kinds;
}

const ZelModelKind *ZelModelKinds::find(const QString &name)
{
    for (const ZelModelKind &kind : kinds) {
        if (name == QLatin1String(kind.name) || name == QLatin1String(kind.title))
            return &kind;
    }
    return nullptr;
}

QString ZelModelKinds::names()
{
    QStringList list;
    for (const ZelModelKind &kind : kinds)
        list.append(QLatin1String(kind.name));
    return list.join(QLatin1String(", "));
}

QStringList ZelModelKinds::reactants(const ZelModelKind &kind, const ZelDbRecord &record)
{
    switch (kind.type) {
    case ZelDb::Cai:
        return values(record, {C::CaiCpa1, C::CaiCpa2});
    case ZelDb::Cad:
        return values(record, {C::CadSourceCpa});
    case ZelDb::Trn:
        return values(record, {C::TrnFromCpa});
    case ZelDb::Pdn:
        return values(record, {C::PdnSourceCpa});
    case ZelDb::Deg:
        return values(record, {C::DegradationCpa});
    default:
        return {};
    }
}

QStringList ZelModelKinds::products(const ZelModelKind &kind, const ZelDbRecord &record)
{
    switch (kind.type) {
    case ZelDb::Cai:
        return values(record, {C::CaiResultCpa});
    case ZelDb::Cad:
        return values(record, {C::CadResultCpa1, C::CadResultCpa2});
    case ZelDb::Trn:
        return values(record, {C::TrnToCpa});
    case ZelDb::Pdn:
        return values(record, {C::PdnProductCpa});
    default:
        return {};
    }
}
