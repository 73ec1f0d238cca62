#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

/// The course's node resource folder, listed once. Names below it are relative, with "/" between components
/// and in the letter case of the disk. Symbolic links and hidden entries are left out: what is compiled is
/// what the course itself holds. So are folders in which content is being made or put aside.
class CSourceTree {
public:
    explicit CSourceTree(const QString& strNativeFolder);

    /// What is on the disk and not in the tree.
    enum class EPassed { Hidden, Link, Unreadable };
    struct Passed {
        EPassed Why;
        QString Name;
    };
    const QList<Passed>& PassedOver() const { return m_passed; }

    QString NativeFolder() const { return m_strFolder; }
    QString NativePath(const QString& strName) const { return m_strFolder + QLatin1Char('/') + strName; }

    /// The file's real name; looked up as it stands, and then ignoring the case of ASCII letters, since
    /// links are lower-cased by rule. Empty when there is none. Blanks, "." and ".." are resolved; a name
    /// that leaves the folder finds nothing.
    QString FindFile(const QString& strName) const;
    /// The same for a folder.
    QString FindFolder(const QString& strName) const;

    /// Every file below a folder, by the folder's real name.
    QStringList FilesBelow(const QString& strFolder) const;
    QStringList TopFolders() const;

    /// How a file stood when it was listed, by its real name.
    struct State {
        qint64 nSize = 0;
        /// In nanoseconds since 1970.
        qint64 nModified = 0;
    };
    State StateOf(const QString& strFile) const { return m_exact.value(strFile); }
    /// A sum over the names of all files, whatever is in them.
    quint64 NamesSum() const { return m_nNamesSum; }

    /// The name under which a file goes to the site. It is the file's own, but for files whose names differ
    /// from another's in letter case alone: a server or disk that doesn't tell case would lose one.
    QString OutputName(const QString& strFile) const { return m_renamed.value(strFile, strFile); }

    /// Joins a folder and a relative name, with "." and ".." resolved; a null text when that leaves the root.
    static QString Join(const QString& strFolder, const QString& strName);

private:
    struct Entry {
        QString strName;
        bool bFolder;
        State state;
    };
    class CWalk;
    void Add(const Entry& entry);
    QString FreeName(const QString& strName) const;

    QString m_strFolder;
    QHash<QString, QString> m_files;
    QHash<QString, QString> m_folders;
    QHash<QString, QStringList> m_below;
    QStringList m_topFolders;
    QHash<QString, QString> m_renamed;
    QHash<QString, State> m_exact;
    quint64 m_nNamesSum = 0;
    QList<Passed> m_passed;
};
