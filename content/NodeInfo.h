#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The index of an exported subtree: "NodeInfo.tni", one line a node, parents before their children. A title
/// or path that holds a comma shifts the fields behind it, when it is read; files of both kinds exist, so
/// that nothing is escaped.

inline const QString c_strNodeInfoFile = QStringLiteral("NodeInfo.tni");

struct NodeInfoRecord {
    /// Its place in the file; names the folder with the node's files.
    qint32 Number = 0;
    /// The Id in the course that it comes from.
    qint32 SourceId = 0;
    QString Title;
    qint32 Type = -1;
    QString Path;
    qint32 OpenType = 0;
    /// Places in the file, -1 for none.
    qint32 FirstChild = -1;
    qint32 NextSibling = -1;
};

/// In the code page; each line ends with 0D 0D 0A.
QByteArray WriteNodeInfo(const QList<NodeInfoRecord>& records);

/// Throws Torvane::CRunException for a line with too few fields. Numbers are not checked here.
QList<NodeInfoRecord> ParseNodeInfo(const QByteArray& bytes);

/// One node of an import: a record, below another step's node.
struct NodeInfoStep {
    qint32 nRecord;
    /// Among the steps; -1 for the first one alone.
    qsizetype nParent;
};

/// What an import makes, in order: record 0 first, then all that its numbers lead to. Damaged ones may lead
/// to the same record twice, but neither out of the list nor round and round: Torvane::CRunException. Empty
/// for no records.
QList<NodeInfoStep> PlanImport(const QList<NodeInfoRecord>& records);

/// The record's path as it stands in the node with this Id: the first part, which is the exporter's "N<id>",
/// is replaced wherever it occurs. An external link stays as it is. Throws Torvane::CRunException for a path
/// that would lead out of the nodes' folders.
QString ImportedPath(qint32 nType, const QString& strPath, qint32 nId);
