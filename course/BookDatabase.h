#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

class CStoreQuery;
class CTitleCipher;

/// Codes of the column Type.
namespace NodeType {
inline constexpr qint32 c_nEmpty = -1;
inline constexpr qint32 c_nEditorPage = 0;
inline constexpr qint32 c_nExternalFile = 1;
inline constexpr qint32 c_nSite = 2;
inline constexpr qint32 c_nExternalLink = 3;
inline constexpr qint32 c_nVideo = 4;
inline constexpr qint32 c_nCourseware = 5;
inline constexpr qint32 c_nInSiteLink = 6;
} // namespace NodeType

/// The root of the course tree.
inline constexpr qint32 c_nRootNodeId = 3;

/// The most characters (UTF-16 units) that a node's title has.
inline constexpr int c_nMaxTitleLength = 40;

struct NodeHeader {
    qint32 Id = -1;
    QString Title;
    qint32 Type = NodeType::c_nEmpty;
};

struct NodeContent {
    qint32 Type = NodeType::c_nEmpty;
    QString Path;
    qint32 OpenType = 0;
    QString FileName;
    QString Comment;
};

struct NewNode {
    qint32 Id = -1;
    qint32 ParentId = -1;
    /// Among its siblings, from 1.
    qint32 Place = 1;
    QString Title;
    NodeContent Content;
    double Size = 0;
};

/// The store of a course's tree: one SQLite file, one table "Book", one row a node. Titles of nodes above Id
/// 3 are enciphered with a key of the course. Every failure of the database is a Torvane::COM::CCOMException.
/// All calls are made on one thread. Each operation of several statements is one transaction. While the store
/// is open a write-ahead log may stand beside the file; operations throw while it is not.
class CBookDatabase {
public:
    /// The title key comes from Province and SchoolName of the settings and the course's id.
    CBookDatabase(const QString& strPath, qint32 nCourseId);
    ~CBookDatabase();
    CBookDatabase(const CBookDatabase&) = delete;
    CBookDatabase& operator=(const CBookDatabase&) = delete;

    /// Opens the file, which must exist and be a course's database; turns the write-ahead log on. True, or
    /// throws.
    bool Open();
    /// Folds the log in, so that the course is one file, and closes the connection if it is open. Never
    /// throws.
    void Close();

    /// Folds the log in and lets go of the file, so that a companion may read it; the operations below must
    /// not be called until ResumeWriting. Throws when the log can't be folded in; the store is usable then.
    void PauseForReaders();
    void ResumeWriting();
    /// False between the two, and for good when ResumeWriting has thrown.
    bool IsOpen() const;

    /// Makes several operations one transaction, undone unless committed. May be nested: an inner one that is
    /// undone takes back its own steps, and the outermost decides whether anything lands. Begun and ended
    /// while the store is open. Throws CCOMException.
    class CTransaction {
    public:
        explicit CTransaction(CBookDatabase& database);
        ~CTransaction();
        CTransaction(const CTransaction&) = delete;
        CTransaction& operator=(const CTransaction&) = delete;
        void Commit();

    private:
        CBookDatabase& m_database;
        bool m_bDone = false;
    };

    /// Adds a node as the last child; its new Id.
    qint32 AddNode(qint32 nParentId, const QString& strTitle);
    /// The Id that the next added node gets; all above it are free too.
    qint32 GetNextId();
    /// Adds a node ready made, for whoever adds thousands: its Id, and its place behind its siblings, are the
    /// caller's to know. Content that is empty is left to the table.
    void InsertNode(const NewNode& node);
    /// Throws when there is no such node. A title that the course's key does not open reads as garbage. Here
    /// and in lists a title or type that can't be converted is empty, so that one bad row costs no course.
    NodeHeader GetNode(qint32 nId);
    /// In sibling order. The three rows that every course has are no one's children, nor is the parent
    /// itself, whatever a damaged course says.
    bool GetChildren(qint32 nParentId, QList<NodeHeader>& list);
    /// Their ids alone, in the same order.
    QList<qint32> GetChildIds(qint32 nParentId);
    /// The children of each child of the parent, by the child's Id, in sibling order; childless ones are not
    /// in it. One statement, however many they are.
    QHash<qint32, QList<NodeHeader>> GetGrandchildren(qint32 nParentId);
    /// Their ids alone. A child of a damaged course may come with an empty list.
    QHash<qint32, QList<qint32>> GetGrandchildIds(qint32 nParentId);
    /// Id is -1 when there is no such child. Exact; does not find titles with a single quote.
    NodeHeader FindChild(qint32 nParentId, const QString& strTitle);
    bool HasChild(qint32 nParentId, const QString& strTitle);
    qint32 GetChildrenCount(qint32 nParentId);
    qint32 GetNodeCount();
    /// Bytes; throws above 2,147,483,647.
    double GetTotalSize();

    /// A column of one node: a number, a text, or nothing for NULL. Throws when there is no such node or
    /// column. The typed forms convert, and throw where that is impossible.
    QVariant GetField(qint32 nId, const QString& strColumn);
    QString GetPath(qint32 nId);
    QString GetFileName(qint32 nId);
    QString GetComment(qint32 nId);
    qint32 GetOpenType(qint32 nId);

    /// The setters write nothing, and answer true, where there is no such node; each notes the local time.
    bool SetContent(qint32 nId, const NodeContent& content);
    /// The same with the size, in one go.
    bool SetContent(qint32 nId, const NodeContent& content, double dBytes);
    /// False, with the row unchanged, when the enciphered title is wider than the column.
    bool SetTitle(qint32 nId, const QString& strTitle);
    bool SetSize(qint32 nId, double dBytes);
    bool SetOpenType(qint32 nId, qint32 nOpenType);
    bool TouchModified(qint32 nId);
    bool SetSeedTitles(const QString& strSchool, const QString& strCourse, const QString& strTeacher);

    /// Deletes one row and closes the gap; its children are the caller's to delete first. False for the three
    /// rows that every course has.
    bool DeleteNode(qint32 nId);
    /// True also at the end of the line, where nothing moves.
    bool MoveUp(qint32 nId);
    bool MoveDown(qint32 nId);
    /// As the first child of the new parent. False, with nothing moved, for the three rows that every course
    /// has, and for a parent that is not there, is the node itself or lies below it: the branch would be lost
    /// from the tree.
    bool MoveTo(qint32 nId, qint32 nNewParentId);

private:
    struct Connection;
    struct Place {
        qint32 nParentId;
        qint32 nIndex;
    };
    template <typename Step>
    auto Guarded(Step step);
    template <typename Step>
    bool InOneTransaction(Step step);
    template <typename Reader>
    auto ReadField(qint32 nId, const QString& strColumn, Reader reader);
    NodeHeader HeaderOf(qint32 nId, const CStoreQuery& query, int nTitleColumn) const;
    template <typename Item, typename Reader>
    static QHash<qint32, QList<Item>> Families(CStoreQuery query, qint32 nAboveId, bool bUniqueIds,
                                               Reader reader);
    QHash<qint32, QList<qint32>> GetFamiliesAmong(qint32 nParentId);
    QString GetText(qint32 nId, const QString& strColumn);
    qint32 GetInt(qint32 nId, const QString& strColumn);
    Place GetPlace(qint32 nId);
    void CloseGap(qint32 nId);
    bool MayHangBelow(qint32 nId, qint32 nNewParentId);

    QString m_strPath;
    std::unique_ptr<CTitleCipher> m_pTitles;
    std::unique_ptr<Connection> m_pConnection;
};
