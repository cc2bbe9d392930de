#pragma once

#include <QByteArray>
#include <QString>

/// A folder that comes to be as a whole: it is filled beside its place and put there at the end,
/// where it replaces nothing but an older report.
class ZelModelReportFolder
{
public:
    /// The first lines of index.html hold this: by it an older report is recognised.
    static constexpr char Generator[] = "zelmodel report";
    static constexpr char IndexFile[] = "index.html";
    static constexpr char PictureFolder[] = "pictures";

    ZelModelReportFolder() = default;
    /// Removes what was begun and not put in place.
    ~ZelModelReportFolder();
    ZelModelReportFolder(const ZelModelReportFolder &) = delete;
    ZelModelReportFolder &operator=(const ZelModelReportFolder &) = delete;

    /// Makes an empty folder beside the target. False when the target may not be replaced.
    bool begin(const QString &target);
    /// Where a file of the folder is until the folder is put in place.
    QString path(const QString &name) const;
    bool write(const QString &name, const QByteArray &bytes);
    /// Says that a file of it could not be written; answers false.
    bool failToWrite(const QString &name);
    /// Puts the folder in its place, an older report goes. False leaves that as it was.
    bool publish();

    /// Of the target, once it is in place.
    QString indexPath() const;
    /// A sentence that says what to do.
    QString errorText() const { return m_errorText; }

private:
    bool fail(const QString &sentence);
    bool isReplaceable();
    bool holdsReportOnly();
    bool exchange() const;

    QString m_target;
    QString m_part;
    QString m_errorText;
};
