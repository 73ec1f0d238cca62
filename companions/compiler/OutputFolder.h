#pragma once

#include "platform/base/FileCalls.h"

#include <QByteArray>
#include <QHash>
#include <QLockFile>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

/// What the compiler knows of a file of the output, from one run to the next.
struct OutputRecord {
    /// A sum over all that the file was made of; 0 when it is made anew each time.
    quint64 nInput = 0;
    /// Sources beside the file's own whose states are in the sum.
    QStringList Sources;
    /// Files that were written along with it.
    QStringList Also;
    /// What there was to say when it was made.
    QStringList Notes;
    /// Of the file as it was written.
    qint64 nSize = -1;
    qint64 nModified = 0;
    /// That it stays in this run. Several threads may mark a file that pages share, and none reads it before
    /// all have ended.
    mutable bool bKept = false;
    /// Whether the file stood as it was written when the folder was opened.
    bool bStands = false;
};

/// What there is to say of a place (native) that can't be written, by the system's code, and what to do.
QString CannotWriteText(const QString& strPath, int nError);

/// The folder that a site is written into. Nothing outside it is ever written. A file appears whole or not at
/// all: it is written in a folder of its own within and then moved to its place, so that a compiler that is
/// killed leaves no half page. A list of what was written lies in the folder; by it the next compile knows
/// which files are still as they should be, which have become stale, and which are a person's own and stay.
/// Paths are native; names are relative, with "/" between components. Failures are Torvane::CRunException.
/// Known, Keep, Write, Copy and Announce may be called by several threads at a time.
class COutputFolder {
public:
    /// Creates the folder, unless it is the course's own folder, holds it, or is or lies in its data, or
    /// holds what was compiled for somebody else than the owner, which is any text without a line break.
    /// Looks at everything that the last run wrote, which takes a while on a slow disk; stop is asked
    /// meanwhile, and after true what was not looked at counts as changed.
    COutputFolder(const QString& strFolder, const QString& strCourseFolder, const QString& strDataFolder,
                  const QString& strOwner, const std::function<bool()>& stop = {});
    ~COutputFolder();
    COutputFolder(const COutputFolder&) = delete;
    COutputFolder& operator=(const COutputFolder&) = delete;

    QString Path() const { return m_strFolder; }

    /// Stands for the place of a course's folder without naming it, since the list goes to the web.
    static QString PlaceOf(const QString& strCourseFolder);
    /// The place of the course that was compiled into a folder; empty where that is not known.
    static QString PlaceIn(const QString& strFolder);

    /// Says what is about to be written, before the first file is.
    void Announce(const QStringList& names);
    /// What the last run knew of a file; null when it wrote none.
    const OutputRecord* Known(const QString& strName) const;
    /// Whether the file of the last run still stands there and was made of just this; then it stays.
    bool Keep(const QString& strName, quint64 nInput);
    /// A file that already holds these bytes is left as it is, with its time.
    void Write(const QString& strName, const QByteArray& bytes, OutputRecord record = {});
    /// A copy that stands as it was made of this is left as it is, and so is one that holds the same bytes.
    /// nInput is a sum over the source's state. stop is asked in a large file: true ends the copying with
    /// Torvane::CRunException.
    void Copy(const QString& strSourcePath, const QString& strName, quint64 nInput,
              const std::function<bool()>& stop = {});
    /// The native path of a file that is not there yet, for another program to write before Adopt takes it.
    QString FreshPath();
    /// Moves such a file to its place. nInput is the sum over all that it was made of.
    void Adopt(const QString& strFreshPath, const QString& strName, quint64 nInput);
    /// Throws what there is to say of a file that could not be written, by the system's code.
    [[noreturn]] void Fail(const QString& strName, int nError) const;
    /// Removes what a former compile wrote and this one did not.
    void Finish();
    /// Leaves the folder to others; all that can still be asked is what follows. The destructor does it, too.
    void Close();

    /// After Finish.
    qsizetype FileCount() const { return m_nFiles; }
    /// How many files were not yet as they should be.
    int ChangedCount() const { return m_nChanged; }
    const QStringList& Notes() const { return m_notes; }

private:
    QString Target(const QString& strName) const;
    void ReadList(const QString& strOwner);
    void LookAtFiles(const std::function<bool()>& stop);
    void MakeFolders();
    void RemoveEmpty();
    void WriteList(bool bFinal);
    void AddToList(const QByteArray& lines, bool bFinal);
    void MakeRoom(const QString& strName);
    void EnsureFolder(const QString& strFolder);
    void SetAside(const QString& strName);
    void MoveIn(const QByteArray& temporary, const QString& strName);
    QByteArray TemporaryName();
    void Remember(const QString& strName, OutputRecord record);
    bool StandsAsWritten(const QString& strName, const OutputRecord& record) const;
    bool HoldsAlready(const QString& strName, const QByteArray& bytes, OutputRecord& record) const;
    bool RemoveStale(const QString& strName);

    const QString m_strFolder;
    QString m_strOwner;
    const QString m_strPlace;
    /// The folders that were not there before, the innermost first.
    QStringList m_made;
    Platform::CFolder m_folder;
    std::unique_ptr<QLockFile> m_pLock;
    /// As the list of the last run had them.
    QHash<QString, OutputRecord> m_known;
    std::atomic<quint64> m_nTemporary = 0;
    std::atomic<int> m_nChanged = 0;

    std::mutex m_mutex;
    /// What is about to be written and was not there before.
    QSet<QString> m_announced;
    QHash<QString, OutputRecord> m_written;
    QSet<QString> m_folders;
    QStringList m_notes;
    /// Whether there is a whole list on the disk.
    bool m_bListStands = false;
    qsizetype m_nLines = 0;
    /// The lines of what was written, where they differ from those of the last run.
    QByteArray m_unlisted;
    qsizetype m_nFiles = 0;
};
