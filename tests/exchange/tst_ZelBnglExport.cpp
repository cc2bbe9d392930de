#include "BnglNetwork.h"
#include "ImportStage.h"

#include "support/ZelTest.h"

#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/export/ZelBnglExport.h"
#include "zelLayout/AutoLayout.h"
#include "zelModelSupport/graphics/ZelRectItemMcpSticky.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBst.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcBstBstCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcCpx.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMcp.h"
#include "zelModelSupport/zelModelSupportDataComponent/SdcMol.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

ZelBnglModel parse(const QByteArray &source)
{
    return ZelBnglParser::parse(source, "m.bngl");
}

QByteArray block(const QByteArray &name, const QByteArray &entries)
{
    return "begin " + name + '\n' + entries + "\nend " + name + '\n';
}

/// Imports, exports, imports and exports again; empty, with a failed check, when that changes
/// anything.
QByteArray exportTwice(const ZelBnglModel &model, ImportStage *first)
{
    if (!first->import(model)) {
        QTest::qFail(qPrintable(first->report().error), __FILE__, __LINE__);
        return {};
    }
    ZelBnglExport exporter(&first->db);
    const QByteArray text = exporter.exportText();
    if (text.isEmpty() || exporter.report().notes.size() > 0) {
        QTest::qFail(qPrintable(exporter.report().toText()), __FILE__, __LINE__);
        return {};
    }
    ImportStage second;
    if (!second.import(text)) {
        QTest::qFail(qPrintable(second.report().error), __FILE__, __LINE__);
        return {};
    }
    const QByteArray again = ZelBnglExport(&second.db).exportText();
    const bool isSame = [&] {
        return QTest::qCompare(again, text, "again", "text", __FILE__, __LINE__)
            && QTest::qCompare(
                second.identities(), first->identities(), "second", "first", __FILE__, __LINE__);
    }();
    return isSame ? text : QByteArray();
}

bool haveSameNetwork(
    const ZelBnglModel &a, const ZelBnglModel &b, const BnglNetwork::Limits &limits)
{
    const BnglNetwork networkA(a, limits);
    const BnglNetwork networkB(b, limits);
    return QTest::qCompare(
               networkB.species(), networkA.species(), "export", "original", __FILE__, __LINE__)
        && QTest::qCompare(networkB.reactions().keys(), networkA.reactions().keys(), "export",
            "original", __FILE__, __LINE__)
        && QTest::qCompare(networkB.reactions().values(), networkA.reactions().values(), "export",
            "original", __FILE__, __LINE__);
}

/// A random model: types with copies and states, rules of all five kinds.
class RandomModel
{
public:
    explicit RandomModel(quint32 seed) : m_random(seed) { }

    QByteArray write()
    {
        QByteArray types;
        QByteArray seeds;
        for (int t = 0; t < 3; ++t) {
            m_types.push_back(makeType());
            types += name(t) + '(' + text(t, true) + ")\n";
            seeds += name(t) + '(' + text(t, false) + ") 10\n";
        }
        QByteArray rules;
        for (int i = 0; i < 6; ++i)
            rules += makeRule() + '\n';
        return block("molecule types", types) + block("seed species", seeds)
            + block("reaction rules", rules);
    }

private:
    struct Component
    {
        QByteArray name;
        int states = 0;
    };
    using Type = std::vector<Component>;

    int pick(int count) { return int(m_random.bounded(count)); }
    static QByteArray name(int type) { return QByteArray(1, char('A' + type)); }
    static QByteArray state(int index) { return '~' + QByteArray::number(index); }
    QByteArray rate() { return 'k' + QByteArray::number(++m_rates); }

    Type makeType()
    {
        Type type;
        const int count = 1 + pick(3);
        while (int(type.size()) < count) {
            const Component component{QByteArray(1, char('p' + pick(3))), 0};
            const auto like = std::find_if(type.begin(), type.end(),
                [&](const Component &other) { return other.name == component.name; });
            type.push_back(
                like != type.end() ? *like : Component{component.name, pick(2) * (2 + pick(2))});
        }
        return type;
    }

    QByteArray text(int type, bool withAllStates) const
    {
        QByteArrayList parts;
        for (const Component &component : m_types[size_t(type)]) {
            QByteArray part = component.name;
            for (int s = 0; s < (withAllStates ? component.states : qMin(component.states, 1)); ++s)
                part += state(s);
            parts.append(part);
        }
        return parts.join(',');
    }

    /// A molecule of that type, of whose components some are mentioned; that one as given.
    QByteArray mol(int type, int component, const QByteArray &given)
    {
        QByteArrayList parts{given};
        for (int c = 0; c < int(m_types[size_t(type)].size()); ++c) {
            const Component &other = m_types[size_t(type)][size_t(c)];
            if (c == component || (m_context >> (3 * type + c) & 1) == 0)
                continue;
            const bool isBound = other.states == 0 && (m_context >> (9 + c) & 1);
            parts.append(other.name + (other.states > 0 ? state(1) + "!?" : QByteArray())
                + (isBound ? "!+" : ""));
        }
        return name(type) + '(' + parts.join(',') + ')';
    }

    QByteArray makeRule()
    {
        m_context = quint32(pick(1 << 14));
        const int a = pick(3);
        const int b = pick(3);
        const int ca = pick(int(m_types[size_t(a)].size()));
        const int cb = pick(int(m_types[size_t(b)].size()));
        const Component &siteA = m_types[size_t(a)][size_t(ca)];
        const Component &siteB = m_types[size_t(b)][size_t(cb)];
        const auto joined = [&](const QByteArray &bond) {
            return mol(a, ca, siteA.name + bond) + '.' + mol(b, cb, siteB.name + bond);
        };
        switch (pick(5)) {
        case 0:
            return mol(a, ca, siteA.name) + " + " + mol(b, cb, siteB.name) + " -> " + joined("!1")
                + ' ' + rate();
        case 1:
            return mol(a, ca, siteA.name) + " + " + mol(b, cb, siteB.name) + " <-> " + joined("!1")
                + ' ' + rate() + ", " + rate();
        case 2:
            if (siteA.states > 0) {
                const int to = 1 + pick(siteA.states - 1);
                return mol(a, ca, siteA.name + state(0) + "!?") + " <-> "
                    + mol(a, ca, siteA.name + state(to) + "!?") + ' ' + rate() + ", " + rate();
            }
            [[fallthrough]];
        case 3:
            return mol(a, ca, siteA.name + "!?") + " -> " + mol(a, ca, siteA.name + "!?") + " + "
                + name(b) + '(' + text(b, false) + ") " + rate();
        default:
            return mol(a, ca, siteA.name) + " -> 0 " + rate();
        }
    }

    QRandomGenerator m_random;
    std::vector<Type> m_types;
    quint32 m_context = 0; ///< which other components the molecules of a rule mention
    int m_rates = 0;
};

/// A model that is drawn by hand.
class Drawing
{
public:
    struct Part
    {
        QString name;
        QStringList sites;
        QStringList features;
    };

    explicit Drawing(ZelDbSqliteModel *db) : m_db(db) { }

    void addMolecule(const QString &name, const QList<Part> &parts)
    {
        SdcMol mol(m_db);
        mol.setProperty(SdcProperty::Name, name);
        mol.setProperty(SdcProperty::ShortName, name);
        for (const Part &part : parts) {
            auto *const mcp = new SdcMcp(m_db);
            mcp->setProperty(SdcProperty::Name, part.name);
            mcp->setProperty(SdcProperty::ShortName, part.name);
            mol.addSdcMcp(mcp);
            zel::layout::makeItem(mcp, nullptr);
            for (const QString &feature : part.features)
                mcp->addTag(feature, "#336699");
            for (const QString &site : part.sites) {
                auto *const bst = new SdcBst(m_db);
                bst->setProperty(SdcProperty::Name, site);
                bst->setProperty(SdcProperty::ShortName, site);
                mcp->addSdcBst(bst);
            }
        }
        zel::layout::drawMolecule(&mol, nullptr);
        QVERIFY(mol.saveToDb());
        m_ids.insert(name, mol.getPsiimId());
    }

    /// A complex in which all sites are free but those that the bonds hold: pairs of molecule and
    /// site. The features are the codes of the first molecule's, one list for each component.
    QString addComplex(const QStringList &mols, const QList<QPair<int, QString>> &bonds,
        const QList<QList<int>> &features = {})
    {
        SdcCpx cpx(m_db);
        for (const QString &name : mols) {
            auto *const mol = new SdcMol(m_db);
            cpx.addSdcChild(mol, true);
            mol->loadFromDb(m_ids.value(name));
        }
        cpx.setAllBstStatus(BindingStatusUnbound);
        const QList<SdcMol *> children = cpx.getChildMolList();
        for (qsizetype i = 0; i < features.size(); ++i) {
            SdcMcp *const mcp = children.first()->getSdcMcpAtIndex(int(i));
            for (qsizetype k = 0; k < features.at(i).size(); ++k)
                mcp->getListSticky().at(k)->setStateType(features.at(i).at(k), false);
            mcp->updateStatePropertyFromSticky();
        }
        for (qsizetype i = 0; i + 1 < bonds.size(); i += 2) {
            auto *const bond = new SdcBstBstCpx(m_db, &cpx);
            for (const auto &[mol, name] : {bonds.at(i), bonds.at(i + 1)}) {
                for (SdcBst *bst : children.at(mol)->getListSdcBst()) {
                    if (bst->getProperty(SdcProperty::ShortName) == name) {
                        bst->setBindingStatus(BindingStatusBound);
                        bond->addSdcBst(bst);
                    }
                }
            }
            cpx.addSdcBstBstCpx(bond);
        }
        cpx.reRankMols(false, false);
        const QString known = m_db->cpxGetPsiimIdFromFingerPrint(cpx.getCpxFingerPrint());
        if (known.isEmpty() ? !cpx.saveToDbCpx()
                            : (cpx.setProperty(SdcProperty::PsiimId, known), false))
            return {};
        return cpx.saveToDbCpa() ? cpx.getProperty(SdcProperty::CpaPsiimId) : QString();
    }

    QString siteId(const QString &name) const
    {
        for (const QString &id : m_db->bstGetListPsiimId()) {
            if (m_db->bstGetHashInfo(id).value(ZelDbColumn::ShortName) == name)
                return id;
        }
        return {};
    }

private:
    ZelDbSqliteModel *m_db;
    QHash<QString, QString> m_ids;
};

} // namespace

class tst_ZelBnglExport : public ZelTest
{
    Q_OBJECT

private slots:
    void keepsTheNetwork_data()
    {
        QTest::addColumn<QByteArray>("types");
        QTest::addColumn<QByteArray>("seeds");
        QTest::addColumn<QByteArray>("rules");
        QTest::addColumn<QByteArray>("expectedRules");
        const auto add = [](const char *row, const char *types, const char *seeds,
                             const char *rules, const char *expected) {
            QTest::newRow(row) << QByteArray(types) << QByteArray(seeds) << QByteArray(rules)
                               << QByteArray(expected);
        };
        add("binding", "A(a,s~U~P)\nB(b)", "A(a,s~U) 1\nB(b) k*2",
            "bind: A(s~U,a) + B(b) <-> B(b!x).A(a!x,s~U) kp , km*2\nA(s~U)->A(s~P) kc",
            "bind: A(a,s~U) + B(b) <-> A(a!1,s~U).B(b!1) kp, km*2\n  Rule2: A(s~U) -> A(s~P) kc");
        add("equal sites", "R(l,l)\nL(r,r,r)", "R(l,l) 1\nL(r,r,r) 1",
            "R(l) + L(r,r,r) <-> R(l!1).L(r!1,r,r) k1,k\nL(r,r,r!+) + R(l) <-> R(l!1).L(r!1,r,r!+) "
            "k2,k",
            "Rule1: R(l) + L(r,r,r) <-> R(l!1).L(r,r,r!1) k1, k\n"
            "  Rule2: R(l) + L(r,r,r!+) <-> R(l!1).L(r,r!1,r!+) k2, k");
        add("states of equal sites", "S(s~U~P,s~U~P,s~U~P)\nK(b)", "S(s~U,s~U,s~U) 1\nK(b) 1",
            "K(b) + S(s~U) <-> K(b!1).S(s~U!1) k1,k2\nK(b!1).S(s~U!1) -> K(b!1).S(s~P!1) "
            "k3\nK(b!1).S(s~P!1) -> K(b) + S(s~P) k4\nS(s~P,s~P!?) -> S(s~U,s~P!?) k5",
            nullptr);
        add("two alike", "A(a,s~0~1~2)", "A(a,s~0) 1",
            "A(a) + A(a) <-> A(a!1).A(a!1) k,l\nA(a!1,s~0).A(a!1) -> A(a!1,s~1).A(a!1) "
            "m\nA(a!1,s~1).A(a!1,s~0) -> A(a!1,s~1).A(a!1,s~2) n",
            "Rule1: A(a) + A(a) <-> A(a!1).A(a!1) k, l\n  Rule2: A(a!1,s~0).A(a!1) -> "
            "A(a!1,s~1).A(a!1) m\n  Rule3: A(a!1,s~1).A(a!1,s~0) -> A(a!1,s~1).A(a!1,s~2) n");
        add("making and removing", "A(a,b)\nB(a)\nC()", "C() 1",
            "0 <-> B(a) k1,k2\nC() -> C() + A(a!1,b).B(a!1) k3\nA(b) -> 0 k4\nC() -> 0 k6",
            "Rule1: 0 <-> B(a) k1, k2\n  Rule2: C() -> C() + A(a!1,b).B(a!1) k3\n  Rule3: A(b) -> "
            "0 "
            "k4\n  Rule4: C() -> 0 k6");
        add("transport", "A(a)\nB(b)", "A(a)@x 1\nB(b)@x 1",
            "A(a)@x -> A(a)@y k\nA(a)@y + B(b)@x <-> A(a!1)@y.B(b!1)@x k1,k2\nA(a!1)@y.B(b!1)@x -> "
            "A(a!1)@y.B(b!1)@y k3",
            nullptr);
        add("what no reaction says", "A(a,s~U~P)\nB(b)", "A(a,s~U) 1\nB(b) 1\nA(a,s~P) 0",
            "one: A(a,s~U) + B(b) -> A(a,s~P) + B(b) k\nA(s~P) -> A(s~U) l\nB(b) -> A(a,s~P) k",
            "Rule2: A(s~P) -> A(s~U) l\n  # not translated: it changes one molecule in the "
            "presence "
            "of another\n  one: A(a,s~U) + B(b) -> A(a,s~P) + B(b) k\n  # not translated: it makes "
            "or "
            "removes molecules in the presence of others\n  Rule3: B(b) -> A(a,s~P) k");
    }

    void keepsTheNetwork()
    {
        QFETCH(const QByteArray, types);
        QFETCH(const QByteArray, seeds);
        QFETCH(const QByteArray, rules);
        QFETCH(const QByteArray, expectedRules);
        const ZelBnglModel model = parse(block("molecule types", types)
            + block("seed species", seeds) + block("reaction rules", rules));
        ImportStage stage;
        const QByteArray text = exportTwice(model, &stage);
        QVERIFY(!text.isEmpty());
        if (!expectedRules.isEmpty())
            QVERIFY2(
                text.contains("reaction rules\n  " + expectedRules + "\nend"), text.constData());
        BnglNetwork::Limits limits;
        for (const char *name : {"A", "B", "L", "R"})
            limits.molecules.insert(name, 3);
        QVERIFY2(haveSameNetwork(model, parse(text), limits), text.constData());
    }

    void keepsTheNetworkOfRandomModels()
    {
        int translated = 0;
        for (quint32 seed = 1; seed <= 40; ++seed) {
            const QByteArray source = RandomModel(seed).write();
            const ZelBnglModel model = parse(source);
            QVERIFY2(model.isValid(), source.constData());
            ImportStage stage;
            const QByteArray text = exportTwice(model, &stage);
            QVERIFY2(!text.isEmpty(), source.constData());
            translated += stage.report().untranslated() == 0;
            BnglNetwork::Limits limits;
            limits.iterations = 3;
            limits.species = 60;
            for (const char *name : {"A", "B", "C"})
                limits.molecules.insert(name, 2);
            QVERIFY2(haveSameNetwork(model, parse(text), limits), (source + text).constData());
        }
        QVERIFY(translated > 20);
    }

    void keepsCorpusModels_data()
    {
        QTest::addColumn<int>("iterations");
        QTest::addColumn<int>("most"); // of each molecule in one species
        QTest::addColumn<bool>("isInReach");
        QTest::newRow("simple_system") << 100 << 100 << true;
        QTest::newRow("heise") << 100 << 100 << true;
        QTest::newRow("Repressilator") << 100 << 100 << true;
        QTest::newRow("tlbr") << 3 << 100 << true;
        QTest::newRow("blbr") << 100 << 5 << true;
        QTest::newRow("toy-jim") << 100 << 100 << true;
        // Volumes, membranes and two bonds on one site are more than the oracle knows.
        QTest::newRow("Motivating_example_cBNGL") << 0 << 0 << false;
    }

    void keepsCorpusModels()
    {
        const QString corpus = qEnvironmentVariable("ZEL_CORPUS");
        if (corpus.isEmpty())
            QSKIP("Set ZEL_CORPUS to the folder of the models to run this test.");
        QFETCH(const int, iterations);
        QFETCH(const int, most);
        QFETCH(const bool, isInReach);
        const auto read = [&](const char *suffix) {
            return ZelBnglParser::parseFile(QDir(corpus).filePath(
                QStringLiteral("models/%1%2")
                    .arg(QLatin1String(QTest::currentDataTag()), QLatin1String(suffix))));
        };
        const ZelBnglModel model = read(".bngl");
        ImportStage stage;
        const QByteArray text = exportTwice(model, &stage);
        QVERIFY(!text.isEmpty());
        const ZelBnglModel exported = parse(text);
        QCOMPARE(exported.rules.size(), model.rules.size());
        QCOMPARE(exported.actions.size(), model.actions.size());
        QCOMPARE(text.count("# not translated: "), stage.db.utrGetListPsiimId().size());
        if (!isInReach)
            return;
        BnglNetwork::Limits limits;
        limits.iterations = iterations;
        for (const ZelBnglMolecule &molecule : model.molecules)
            limits.molecules.insert(model.name(molecule.name).toByteArray(), most);
        QVERIFY(haveSameNetwork(model, exported, limits));

        const BnglNetwork network(model, limits);
        const ZelBnglModel expected = read(".net");
        const BnglNetwork list(expected, {0, 0, {}});
        QCOMPARE(network.species(), list.species());
        QCOMPARE(network.reactions().size(), qsizetype(expected.reactions.size()));
        // Factors, where the list names the rate as the model does.
        static const QRegularExpression rateForm("^(?:([0-9.]+)\\*)?(\\w+)$");
        int compared = 0;
        for (const ZelBnglReaction &reaction : expected.reactions) {
            const auto side = [&](ZelBnglRange range) {
                QStringList texts;
                for (const quint32 number : ZelBnglModel::items(expected.numbers, range)) {
                    if (number > 0)
                        texts.append(
                            list.textOf(expected.patterns[expected.species[number - 1].pattern]));
                }
                texts.sort();
                return texts.join(QLatin1String(" + "));
            };
            const QRegularExpressionMatch rate =
                rateForm.match(QString::fromUtf8(expected.line(reaction.rate)));
            const auto known = network.reactions().constFind(side(reaction.reactants)
                + QLatin1String(" -> ") + side(reaction.products) + u' ' + rate.captured(2));
            if (known == network.reactions().constEnd())
                continue;
            ++compared;
            QCOMPARE(*known, rate.captured(1).isEmpty() ? 1.0 : rate.captured(1).toDouble());
        }
        QVERIFY(compared >= 4);
    }

    void writesWhatWasDrawn()
    {
        ImportStage stage;
        Drawing drawing(&stage.db);
        drawing.addMolecule(
            "R-α", {{"head", {"in", "out"}, {}}, {"tail", {"t"}, {"pY"}}, {"link", {}, {}}});
        drawing.addMolecule("L", {{"l", {"l"}, {}}});
        const QString free = drawing.addComplex({"R-α"}, {}, {{}, {ComponentStateOff}, {}});
        const QString ligand = drawing.addComplex({"L"}, {});
        const QString bound =
            drawing.addComplex({"R-α", "L"}, {{0, "out"}, {1, "l"}}, {{}, {ComponentStateOff}, {}});
        const QString active =
            drawing.addComplex({"R-α", "L"}, {{0, "out"}, {1, "l"}}, {{}, {ComponentStateOn}, {}});
        QVERIFY(!free.isEmpty() && !ligand.isEmpty() && !bound.isEmpty() && !active.isEmpty());
        QVERIFY(stage.db.caiInsert({{ZelDbColumn::PsiimId, "cai1"},
            {ZelDbColumn::ShortName, "bind: it"}, {ZelDbColumn::AssociationRate, "1.00e-03"},
            {ZelDbColumn::CaiCpa1, free}, {ZelDbColumn::CaiCpa2, ligand},
            {ZelDbColumn::CaiResultCpa, bound}, {ZelDbColumn::Bst1, drawing.siteId("out")},
            {ZelDbColumn::MolPos1, "0"}, {ZelDbColumn::Bst2, drawing.siteId("l")},
            {ZelDbColumn::MolPos2, "0"}, {ZelDbColumn::Geometry, "3D"}}));
        QVERIFY(stage.db.cadInsert({{ZelDbColumn::PsiimId, "cad1"},
            {ZelDbColumn::ShortName, "part"}, {ZelDbColumn::CadSourceCpa, bound},
            {ZelDbColumn::CadResultCpa1, ligand}, {ZelDbColumn::CadResultCpa2, free}}));
        QVERIFY(stage.db.trnInsert({{ZelDbColumn::PsiimId, "trn1"},
            {ZelDbColumn::ShortName, "switch"}, {ZelDbColumn::TrnFromCpa, bound},
            {ZelDbColumn::TrnToCpa, active}, {ZelDbColumn::Rate, "2"}}));

        ZelBnglExport exporter(&stage.db);
        const QByteArray text = exporter.exportText();
        QCOMPARE(QString::fromUtf8(text),
            "begin model\n"
            "begin molecule types\n"
            "  R__(head_in,head_out,tail,tail_pY~off~on)\n"
            "  L(l)\n"
            "end molecule types\n"
            "begin seed species\n"
            "  R__(head_in,head_out,tail,tail_pY~off) 0\n"
            "  L(l) 0\n"
            "  R__(head_in,head_out!1,tail,tail_pY~off).L(l!1) 0\n"
            "  R__(head_in,head_out!1,tail,tail_pY~on).L(l!1) 0\n"
            "end seed species\n"
            "begin reaction rules\n"
            "  bind_ it: R__(head_in,head_out,tail,tail_pY~off) + L(l) -> "
            "R__(head_in,head_out!1,tail,tail_pY~off).L(l!1) 1.00e-03\n"
            "  part: R__(head_in,head_out!1,tail,tail_pY~off).L(l!1) -> "
            "R__(head_in,head_out,tail,tail_pY~off) + L(l) 0\n"
            "  switch: R__(head_in,head_out!1,tail,tail_pY~off).L(l!1) -> "
            "R__(head_in,head_out!1,tail,tail_pY~on).L(l!1) 2\n"
            "end reaction rules\n"
            "end model\n");
        QStringList notes;
        for (const ZelExportReport::Note &note : exporter.report().notes)
            notes.append(note.item + QLatin1String(": ") + note.reason);
        QCOMPARE(notes,
            (QStringList{"molecule \"R-α\": \"R-α\" is R__ in the file",
                "component \"head\" of molecule \"R-α\": its sites and features are "
                "components of their own in the file",
                "component \"tail\" of molecule \"R-α\": its sites and features are "
                "components of their own in the file",
                "component \"link\" of molecule \"R-α\": it has neither sites nor features",
                "dissociation \"part\": it has no rate and goes with 0"}));
        ImportStage again;
        QVERIFY(again.import(text));
        QCOMPARE(again.report().untranslated(), 0);
    }

    void saysWhatItCannotSay()
    {
        ImportStage stage;
        QVERIFY(stage.import(block("molecule types", "A(a,s~U~P~Q)\nB(b)")
            + block("seed species", "A(a,s~U) 1\nB(b) 1")));
        ZelDbSqliteModel &db = stage.db;
        const QString a = db.cpaGetListPsiimId().value(0);
        const QString b = db.cpaGetListPsiimId().value(1);
        QVERIFY(db.cpaInsert("cpaNot", db.cpaGetCpxPsiimId(a), QString(),
            "<cpx><mol pos=\"1\"><mcp pos=\"2\" states=\"0(-)\"></mcp></mol></cpx>", "notU"));
        QVERIFY(db.cpaInsert(
            "cpaBroken", db.cpaGetCpxPsiimId(b), QString(), "<!DOCTYPE a><cpx>", "broken"));
        const auto degrade = [&](const char *id, const QString &cpa, const char *rate) {
            return db.degInsert({{ZelDbColumn::PsiimId, QLatin1String(id)},
                {ZelDbColumn::ShortName, QLatin1String(id)}, {ZelDbColumn::DegradationCpa, cpa},
                {ZelDbColumn::DegradationRate, QLatin1String(rate)}});
        };
        QVERIFY(degrade("deg1", "cpaNot", "1"));
        QVERIFY(degrade("deg2", "cpaBroken", "1"));
        QVERIFY(degrade("end 3", a, "k\nend model"));
        QVERIFY(db.pdnInsert({{ZelDbColumn::PsiimId, "pdn1"}, {ZelDbColumn::ShortName, "late"},
            {ZelDbColumn::PdnProductCpa, b}, {ZelDbColumn::PdnDelay, "5"},
            {ZelDbColumn::PdnK, "1"}}));
        QVERIFY(db.trnInsert({{ZelDbColumn::PsiimId, "trn1"}, {ZelDbColumn::ShortName, "idle"},
            {ZelDbColumn::TrnFromCpa, a}, {ZelDbColumn::TrnToCpa, a}, {ZelDbColumn::Rate, "1"}}));
        QVERIFY(db.parInsert({{ZelDbColumn::PsiimId, "par1"}, {ZelDbColumn::ShortName, "end"},
            {ZelDbColumn::ParameterValue, "1"}}));

        ZelBnglExport exporter(&db);
        const QByteArray text = exporter.exportText();
        QVERIFY(
            text.contains("begin reaction rules\n  end_3: A(a,s~U) -> 0 0\nend reaction rules"));
        QStringList leftOut;
        for (const ZelExportReport::Note &note : exporter.report().notes) {
            if (note.isLeftOut)
                leftOut.append(note.item + QLatin1String(": ") + note.reason);
        }
        QCOMPARE(leftOut,
            (QStringList{"parameter \"end\": its name or its value is not allowed",
                "transformation \"idle\": its sides differ in more than states and "
                "compartments, or in nothing",
                "production \"late\": its rate depends on more than k: the file knows "
                "no delay, m and n",
                "degradation \"deg1\": of the complex \"notU\": its component \"s\" "
                "says which state it has not",
                "degradation \"deg2\": of the complex \"broken\": its state code is "
                "not readable"}));
        QCOMPARE(exporter.report().leftOut(), 5);
        QVERIFY(
            exporter.report().toText().contains(QLatin1String("left out: production \"late\"")));
        QCOMPARE(QJsonDocument::fromJson(exporter.report().toJson())
                     .object()
                     .value(QLatin1String("notes"))
                     .toArray()
                     .size(),
            exporter.report().notes.size());
    }

    void refusesRulesThatRecordsDoNotTell_data()
    {
        const QString bond = QStringLiteral("its two sides do not tell which bond it breaks");
        const QString change = QStringLiteral("its two sides do not tell what it changes");
        rows<QByteArray, QString>({"rule", "reason"},
            {{"either end of a chain",
                 {"A(x!1,y).A(y!1,x!2).A(y!2,x) -> A(x,y) + A(x!1,y).A(y!1,x) k", bond}},
                {"each by one or one by two", {"P(s~0,s~1) -> P(s~1,s~2) k", change}},
                {"exchange", {"P(s~0,s~1) -> P(s~1,s~0) k", change}},
                {"one of several ways is the shortest",
                    {"D(d!1,t~0,u~1).D(d!1,t~1,u~0) -> D(d!1,t~1,u~1).D(d!1,t~0,u~0) k", change}}});
    }

    void refusesRulesThatRecordsDoNotTell()
    {
        QFETCH(const QByteArray, rule);
        QFETCH(const QString, reason);
        const ZelBnglModel model =
            parse(block("molecule types", "A(x,y)\nP(s~0~1~2,s~0~1~2)\nD(d,t~0~1,u~0~1)")
                + block("seed species", "A(x,y) 1\nP(s~0,s~1) 1\nD(d!1,t~0,u~1).D(d!1,t~1,u~0) 1")
                + block("reaction rules", rule));
        ImportStage stage;
        QVERIFY(!exportTwice(model, &stage).isEmpty());
        QCOMPARE(int(stage.report().losses.size()), 1);
        QCOMPARE(stage.report().losses.first().reason, reason);
    }

    void bringsBondsAsInteractions()
    {
        ImportStage stage;
        QVERIFY(stage.import(block("molecule types", "A(a)\nB(b,b)\nC(c)")
            + block("reaction rules",
                "A(a) + B(b) <-> A(a!1).B(b!1) k,l\nB(b,b!+) + A(a) -> B(b!1,b!+).A(a!1) m\n"
                "C(c!1).C(c!1) -> C(c) + C(c) n")));
        ZelDbSqliteModel &db = stage.db;
        QStringList texts;
        for (const QString &id : db.mliGetListPsiimId()) {
            const ZelDbRecord record = db.mliGetHashInfo(id);
            QVERIFY(!record.value(ZelDbColumn::GraphicsInfo).isEmpty());
            QCOMPARE(db.mliGetArrayBstBst(id).size(), 1);
            texts.append(record.value(ZelDbColumn::ShortName) + u' '
                + record.value(ZelDbColumn::AssociationRate) + u' '
                + record.value(ZelDbColumn::DissociationRate));
        }
        QCOMPARE(texts, (QStringList{"A(a).B(b) k l", "A(a).B(b_2) k l", "C(c).C(c) 0 n"}));
        QCOMPARE(stage.report().interactions, 3);
    }

    void keepsTheOldFileOnFailure()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath("m.bngl");
        ImportStage stage;
        QVERIFY(stage.import(block("molecule types", "A(a)")));
        ZelBnglExport exporter(&stage.db);
        QVERIFY(exporter.exportFile(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QCOMPARE(text, exporter.exportText());

        const QString missing = dir.filePath("no/m.bngl");
        QVERIFY(!exporter.exportFile(missing));
        QVERIFY(exporter.report().error.contains(missing));
        QVERIFY(exporter.report().toText().startsWith(QLatin1String("Nothing was exported to ")));
        QVERIFY(!exporter.exportFile(dir.path()));

        stage.file.close();
        QVERIFY(!exporter.exportFile(path));
        QCOMPARE(exporter.report().error, "No model is open. Open or create one first.");
        QVERIFY(!ZelBnglExport(nullptr).exportFile(path));
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), text);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"m.bngl"});
    }
};

ZEL_TEST(tst_ZelBnglExport)
#include "tst_ZelBnglExport.moc"
