#pragma once

#include <QList>
#include <QString>

/// One row of a course's store, as the tree shows it.
struct StoreRow {
    qint32 Id = 0;
    qint32 ParentId = 0;
    QString Title;
    qint32 Type = -1;
    QString Path;
    qint32 OpenType = 0;
    QString FileName;
    QString Comment;
};

/// Every row of the store in sibling order, read in one pass through a read-only connection: the course is
/// never changed by being compiled. strPath is in backslash form. Throws Torvane::CRunException with a
/// message for a store that is missing, locked or broken.
QList<StoreRow> ReadStore(const QString& strPath, qint32 nCourseId);
