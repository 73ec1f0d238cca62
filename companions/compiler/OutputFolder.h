#pragma once

#include <QByteArray>
#include <QLockFile>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

/// The folder that a site is written into. Nothing outside it is ever written. A file appears whole or not at
/// all: it is written in a folder of its own within and then moved to its place, so that a compiler that is
/// killed leaves no half page. A list of what was written lies in the folder; by it the next compile knows
/// which files have become stale, and which are a person's own and stay.
/// Paths are native; names are relative, with "/" between components. Failures are Torvane::CRunException.
class COutputFolder {
public:
    /// Creates the folder, unless it is the course's own folder, holds it, or is or lies in its data.
    COutputFolder(const QString& strFolder, const QString& strCourseFolder, const QString& strDataFolder);
    ~COutputFolder();
    COutputFolder(const COutputFolder&) = delete;
    COutputFolder& operator=(const COutputFolder&) = delete;

    QString Path() const { return m_strFolder; }

    /// Says what is about to be written, before the first file is.
    void Announce(const QStringList& names);
    /// A file that already holds these bytes is left as it is.
    void Write(const QString& strName, const QByteArray& bytes);
    /// A copy that is up to date by size and time is left as it is.
    void Copy(const QString& strSourcePath, const QString& strName);
    /// Removes what a former compile wrote and this one did not.
    void Finish();

    qsizetype FileCount() const { return m_written.size(); }
    const QStringList& Notes() const { return m_notes; }

private:
    QString Target(const QString& strName) const;
    void ReadList();
    void WriteList(const QSet<QString>& names);
    void MakeRoom(const QString& strName);
    void EnsureFolder(const QString& strFolder);
    void SetAside(const QString& strName);
    void MoveIn(const QString& strTemporary, const QString& strName);
    QString TemporaryPath();
    void RemoveStale(const QString& strName);
    [[noreturn]] void Fail(const QString& strPath, const QString& strReason) const;

    QString m_strFolder;
    std::unique_ptr<QLockFile> m_pLock;
    /// What the compiler wrote before or is about to write.
    QSet<QString> m_former;
    QSet<QString> m_written;
    QSet<QString> m_folders;
    QStringList m_notes;
    quint64 m_nTemporary = 0;
};
