#pragma once

#include "foundation/Text.h"

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
    /// Throws Torvane::CRunException with a message when the folder can't be listed. A folder within it that
    /// can't is passed over. With a file for CKeptListings, folders that have not changed since the last time
    /// are not read again.
    explicit CSourceTree(const QString& strNativeFolder, const QString& strListings = {});

    /// False where there is no such folder, as in a course in which no node has content yet.
    bool IsThere() const { return m_bThere; }

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
    /// Of all files below a folder of the top, by its real name, in bytes.
    qint64 SizeBelow(const QString& strTopFolder) const;

    /// How a file stood when it was listed, by its real name.
    struct State {
        qint64 nSize = 0;
        /// In nanoseconds since 1970: of its content, and of anything about it.
        qint64 nModified = 0;
        qint64 nChanged = 0;
    };
    State StateOf(const QString& strFile) const;
    /// A sum over the names of all files, whatever is in them.
    quint64 NamesSum() const { return m_nNamesSum; }

    /// The name under which a file goes to the site. It is the file's own, but for files whose names differ
    /// from another's in letter case alone: a server or disk that doesn't tell case would lose one.
    QString OutputName(const QString& strFile) const { return m_renamed.value(strFile, strFile); }

    /// Joins a folder and a relative name, with "." and ".." resolved; a null text when that leaves the root.
    static QString Join(const QString& strFolder, const QString& strName);

private:
    /// Compared ignoring the case of ASCII letters.
    struct FoldedName {
        QString strName;
        friend bool operator==(const FoldedName& a, const FoldedName& b) {
            return EqualsIgnoringCase(a.strName, b.strName);
        }
        friend std::size_t qHash(const FoldedName& name, std::size_t nSeed) { return name.Hash(nSeed); }
        std::size_t Hash(std::size_t nSeed) const;
    };
    struct Entry {
        QString strName;
        bool bFolder;
        State state;
    };
    struct File {
        QString strName;
        State state;
    };
    struct Folder {
        QString strName;
        std::size_t nGroup;
    };
    /// What one entry of the top is or holds: each folder before what lies in it.
    struct Group {
        std::vector<Entry> Entries;
        QList<Passed> PassedOver;
        quint64 nNamesSum = 0;
        qint64 nSize = 0;
    };
    class CWalk;
    void Add(const Entry& entry, std::size_t nGroup);
    QString FreeName(const QString& strName) const;
    const Group* GroupOf(const QString& strTop) const;

    QString m_strFolder;
    bool m_bThere = true;
    std::vector<Group> m_groups;
    /// By the name that the file has in the site.
    QHash<FoldedName, File> m_files;
    QHash<FoldedName, Folder> m_folders;
    QStringList m_topFolders;
    /// Files whose name differs from another's in letter case alone, by their real names.
    QHash<QString, State> m_twins;
    QHash<QString, QString> m_renamed;
    quint64 m_nNamesSum = 0;
    QList<Passed> m_passed;
};
