#include "apps/zelmodel/ZelModelReportFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <fcntl.h>

namespace {

constexpr qint64 MarkerReach = 2000; // bytes of index.html in which the marker stands

constexpr QDir::Filters AllEntries =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

bool hasSuffix(const QFileInfo &info, std::initializer_list<const char *> suffixes)
{
    for (const char *suffix : suffixes) {
        if (info.suffix() == QLatin1String(suffix))
            return !info.isSymLink() && info.isFile();
    }
    return false;
}

} // namespace

ZelModelReportFolder::~ZelModelReportFolder()
{
    if (!m_part.isEmpty())
        QDir(m_part).removeRecursively();
}

bool ZelModelReportFolder::fail(const QString &sentence)
{
    m_errorText = sentence;
    return false;
}

bool ZelModelReportFolder::begin(const QString &target)
{
    m_target = QDir::cleanPath(QDir::current().absoluteFilePath(target));
    if (!isReplaceable())
        return false;
    const QFileInfo parent(QFileInfo(m_target).path());
    if (!parent.isDir()) {
        return fail(QLatin1String("There is no folder '%1' to write the report in; make it first, "
                                  "or choose another place.")
                        .arg(parent.filePath()));
    }
    QTemporaryDir folder(m_target + QLatin1String(".part-XXXXXX"));
    folder.setAutoRemove(false);
    if (!folder.isValid()) {
        return fail(QLatin1String("Nothing can be written in '%1'; choose another place for the "
                                  "report.")
                        .arg(parent.filePath()));
    }
    m_part = folder.path();
    if (!QDir(m_part).mkdir(QLatin1String(PictureFolder)))
        return fail(
            QLatin1String("'%1' cannot be written; check that its disk has room.").arg(m_part));
    // A temporary folder is its maker's alone; the report is as open as any new folder.
    QFile::setPermissions(m_part, QFile::permissions(path(QLatin1String(PictureFolder))));
    return true;
}

QString ZelModelReportFolder::path(const QString &name) const
{
    return m_part + u'/' + name;
}

QString ZelModelReportFolder::indexPath() const
{
    return m_target + u'/' + QLatin1String(IndexFile);
}

bool ZelModelReportFolder::write(const QString &name, const QByteArray &bytes)
{
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly) && file.write(bytes) == bytes.size()
        && file.flush())
        return true;
    return failToWrite(name);
}

bool ZelModelReportFolder::failToWrite(const QString &name)
{
    return fail(QLatin1String(
        "The file '%1' of the report cannot be written; check that the disk has room.")
                    .arg(name));
}

bool ZelModelReportFolder::isReplaceable()
{
    const QFileInfo info(m_target);
    if (info.isSymLink()) {
        return fail(QLatin1String("'%1' is a link; name the folder itself, or choose another one.")
                        .arg(m_target));
    }
    if (!info.exists())
        return true;
    if (!info.isDir())
        return fail(QLatin1String("'%1' is no folder; choose another name.").arg(m_target));
    return QDir(m_target).isEmpty(AllEntries) || holdsReportOnly();
}

/// Whatever is not recognised may be of value to someone.
bool ZelModelReportFolder::holdsReportOnly()
{
    const QDir folder(m_target);
    QFile index(indexPath());
    const bool isReport = !QFileInfo(index).isSymLink() && index.open(QIODevice::ReadOnly)
        && index.read(MarkerReach).contains(Generator);
    if (!isReport) {
        return fail(QLatin1String("'%1' holds something else than a report; choose a new or an "
                                  "empty folder.")
                        .arg(m_target));
    }
    const auto foreign = [this](const QFileInfo &info) {
        return fail(QLatin1String("'%1' is no part of the report that would be replaced; move it "
                                  "away, or choose another folder.")
                        .arg(info.filePath()));
    };
    const QFileInfoList entries = folder.entryInfoList(AllEntries);
    for (const QFileInfo &entry : entries) {
        const bool isPictures =
            entry.fileName() == QLatin1String(PictureFolder) && entry.isDir() && !entry.isSymLink();
        if (!isPictures && !hasSuffix(entry, {"html", "css", "js"}))
            return foreign(entry);
    }
    const QFileInfoList pictures =
        QDir(folder.filePath(QLatin1String(PictureFolder))).entryInfoList(AllEntries);
    for (const QFileInfo &entry : pictures) {
        if (!hasSuffix(entry, {"svg"}))
            return foreign(entry);
    }
    return true;
}

/// Both at once where the file system can, so that there is a report at any moment.
bool ZelModelReportFolder::exchange() const
{
    const QByteArray part = QFile::encodeName(m_part);
    const QByteArray target = QFile::encodeName(m_target);
    if (renameat2(AT_FDCWD, part.constData(), AT_FDCWD, target.constData(), RENAME_EXCHANGE) == 0)
        return true;
    const QByteArray old = part + ".old";
    if (std::rename(target.constData(), old.constData()) != 0)
        return false;
    if (std::rename(part.constData(), target.constData()) == 0)
        return std::rename(old.constData(), part.constData()) == 0;
    std::rename(old.constData(), target.constData());
    return false;
}

bool ZelModelReportFolder::publish()
{
    const auto refuse = [this] {
        return fail(
            QLatin1String("The report cannot be put in place as '%1'; choose another folder.")
                .arg(m_target));
    };
    // It may have changed while the report was written.
    if (!isReplaceable())
        return false;
    const bool replaces = QFileInfo::exists(m_target);
    if (replaces ? !exchange()
                 : std::rename(QFile::encodeName(m_part).constData(),
                       QFile::encodeName(m_target).constData())
                != 0)
        return refuse();
    // What is there now is the old report, or nothing.
    if (replaces)
        QDir(m_part).removeRecursively();
    m_part.clear();
    return true;
}
