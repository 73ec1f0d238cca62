#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

/// The pictures of one paste. Where they come from may be gone before the page is saved, so each becomes a
/// file at once, in a folder that lives as long as the page is being edited; the save then copies it into the
/// course like any other.
class CPastedPictures {
public:
    /// The folder is made for its first picture. What lies below the course's folder stays where it is,
    /// unless it was pasted into another page, which takes it along when it goes. Both with a trailing
    /// backslash.
    CPastedPictures(QString strFolder, QString strCourseFolder);

    /// What stands in the page for a reference of the pasted text: a path, the address of a picture on the
    /// web, or nothing where there is no picture that a page can show.
    QString Name(const QString& strReference);
    /// The path of a picture file; empty when it is none, or none that a page can show.
    QString TakeFile(const QString& strPath);
    /// A picture that should have been taken and could not: a failure, unless there is one already.
    void Miss(const QString& strPath);
    /// The path of a new file with these bytes; empty when they are no picture that a page can show, or when
    /// it could not be written.
    QString Keep(const QByteArray& bytes);

    /// Why a picture of this machine could not be read or written; empty when all were.
    QString GetFailure() const { return m_strFailure; }
    /// The new files go again: nothing of what was pasted has come into the page. All is as it was at first.
    void RemoveMade();

private:
    bool Write(const QString& strPath, const QByteArray& bytes);

    QString m_strFolder;
    QString m_strCourseFolder;
    QString m_strFailure;
    QStringList m_made;
    /// By what they hold.
    QHash<QByteArray, QString> m_paths;
    qint64 m_nBytes = 0;
};
