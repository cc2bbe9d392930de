#include "zelDb/ZelDbIntegrity.h"

#include "zelDb/ZelDbConnection.h"

namespace {

struct Check
{
    const char *statement; ///< answers up to three texts a row
    const char *sentence;
};

constexpr Check checks[] = {
    {"PRAGMA integrity_check(100)", "The file is damaged: %1."},
    {"SELECT \"table\", rowid, parent FROM pragma_foreign_key_check LIMIT 100",
        "Row %2 of table %1 refers to a record of table %3 that does not exist."},
    {"SELECT DISTINCT b.cpx, b.pos, b.site FROM ("
     "SELECT cpx, molPos1 AS pos, bst1 AS site FROM cpxBstBst"
     " UNION ALL SELECT cpx, molPos2, bst2 FROM cpxBstBst) b"
     " LEFT JOIN cpxMol m ON m.cpx = b.cpx AND m.position = b.pos"
     " LEFT JOIN bst s ON s.psiimId = b.site LEFT JOIN mcp c ON c.psiimId = s.mcp"
     " WHERE m.mol IS NULL OR c.mol IS NOT m.mol ORDER BY 1, 2, 3 LIMIT 100",
        "Complex %1 has a bond at site %3 of its molecule %2, which has no such site."},
    {"SELECT b.cpx, b.pos, b.site FROM ("
     "SELECT cpx, molPos1 AS pos, bst1 AS site FROM cpxBstBst"
     " UNION ALL SELECT cpx, molPos2, bst2 FROM cpxBstBst) b"
     " GROUP BY 1, 2, 3 HAVING count(*) > 1 ORDER BY 1, 2, 3 LIMIT 100",
        "Complex %1 has more than one bond at site %3 of its molecule %2."},
    {"SELECT cpx, count(*) FROM cpxMol GROUP BY cpx"
     " HAVING count(*) <> max(position) + 1 ORDER BY 1 LIMIT 100",
        "Complex %1 leaves positions among its %2 molecules empty."},
    {"SELECT p.mol, p.a, p.b FROM mcpMcp p WHERE p.b >="
     " (SELECT count(*) FROM mcp c WHERE c.mol = p.mol) ORDER BY 1, 2, 3 LIMIT 100",
        "Molecule %1 joins its components %2 and %3, which are more than it has."},
    {"SELECT a.psiimId, b.psiimId FROM cpx a JOIN cpx b"
     " ON a.fingerPrint = b.fingerPrint AND a.rowNumber < b.rowNumber"
     " WHERE a.fingerPrint <> '' ORDER BY 1, 2 LIMIT 100",
        "Complexes %1 and %2 are the same."},
};

} // namespace

QStringList ZelDbIntegrity::problems(ZelDbConnection &connection)
{
    QStringList sentences;
    for (const Check &check : checks) {
        const bool ok =
            connection.read(QLatin1String(check.statement), {}, [&](const QSqlQuery &row) {
                const QString first = row.value(0).toString();
                if (first == QLatin1String("ok"))
                    return;
                QString sentence = QLatin1String(check.sentence);
                // Backwards: a text that was put in may itself hold a "%1".
                for (int i = 2; i >= 0; --i) {
                    const qsizetype at = sentence.indexOf(u'%' + QString::number(i + 1));
                    if (at >= 0)
                        sentence.replace(at, 2, row.value(i).toString());
                }
                sentences.append(sentence);
            });
        if (!ok)
            sentences.append(connection.errorText());
    }
    return sentences;
}
