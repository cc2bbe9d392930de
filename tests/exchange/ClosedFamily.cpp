#include "ClosedFamily.h"

#include <QByteArrayList>

int ClosedFamily::speciesCount() const
{
    return 2 + (isIdentical ? (sites + 3) * (sites + 2) * (sites + 1) / 6 : 1 << (2 * sites));
}

std::vector<std::vector<ClosedFamily::Site>> ClosedFamily::listed() const
{
    std::vector<std::vector<Site>> list;
    for (int code = 0; code < 1 << (2 * sites); ++code) {
        std::vector<Site> species;
        for (int i = 0; i < sites; ++i) {
            const int way = code >> (2 * i) & 3;
            species.push_back({(way & 1) != 0, (way & 2) != 0});
        }
        list.push_back(std::move(species));
    }
    return list;
}

QByteArray ClosedFamily::source() const
{
    QByteArrayList names;
    for (int i = 0; i < sites; ++i)
        names.append(isIdentical ? QByteArray("s") : 's' + QByteArray::number(i));
    QByteArray text = "begin molecule types\nS(" + names.join("~U~P,")
        + "~U~P)\nK(b)\nF(b)\nend molecule types\nbegin seed species\nK(b) 1\nF(b) 1\n";
    for (const std::vector<Site> &species : listed()) {
        QByteArrayList parts;
        QByteArray partners;
        for (int i = 0; i < sites; ++i) {
            const Site &site = species[static_cast<size_t>(i)];
            QByteArray part = names.at(i) + (site.isP ? "~P" : "~U");
            if (site.isBound) {
                const QByteArray bond = '!' + QByteArray::number(i + 1);
                part += bond;
                partners += (site.isP ? ".F(b" : ".K(b") + bond + ')';
            }
            parts.append(part);
        }
        text += "S(" + parts.join(',') + ')' + partners + " 0\n";
    }
    return text + "end seed species\n";
}
