#include "apps/zelmodel/ZelModelReportSearch.h"

#include "apps/zelmodel/ZelModelReportFolder.h"
#include "apps/zelmodel/ZelModelReportPlaces.h"
#include "apps/zelmodel/ZelModelText.h"

#include <QJsonArray>

#include <algorithm>
#include <iterator>

namespace {

constexpr qsizetype Aim = 1200000; // characters of texts altogether, for a phone
constexpr qsizetype LongestText = 400;
constexpr qsizetype ShortestText = 60;

} // namespace

ZelModelReportSearch::ZelModelReportSearch(
    ZelModelReportFolder *folder, const ZelModelReportPlaces &places)
    : m_folder(folder), m_places(places), m_file(folder->path(QLatin1String(FileName))),
      m_longestText(std::clamp(Aim / std::max(1, places.size()), ShortestText, LongestText)),
      m_isGood(m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
{
    write("zelReport({\"chapters\":");
    QJsonArray chapters;
    for (const ZelModelReportChapter &chapter : places.chapters()) {
        chapters.append(
            chapter.isInline() ? QStringLiteral("index") : QString(QLatin1String(chapter.file)));
    }
    write(ZelModelText::json(chapters));
    write(",\"kinds\":");
    QJsonArray kinds;
    for (const ZelModelKind &kind : ZelModelKinds::all())
        kinds.append(QLatin1String(kind.title));
    write(ZelModelText::json(kinds));
    write(",\"records\":[");
}

void ZelModelReportSearch::write(const QByteArray &bytes)
{
    m_isGood = m_isGood && m_file.write(bytes) == bytes.size();
}

void ZelModelReportSearch::add(int place, const QString &text)
{
    const ZelModelReportPlace &there = m_places.at(place);
    const auto kind = std::distance(ZelModelKinds::all().data(), there.kind);
    write(m_isFirst ? "\n" : ",\n");
    m_isFirst = false;
    write(ZelModelText::json(QJsonArray{there.chapter, there.part, static_cast<int>(kind),
        there.key, ZelModelText::shortened(there.title, m_longestText),
        ZelModelText::shortened(text, m_longestText)}));
}

bool ZelModelReportSearch::finish()
{
    write("\n]});\n");
    if (m_isGood && m_file.flush())
        return true;
    return m_folder->failToWrite(QLatin1String(FileName));
}
