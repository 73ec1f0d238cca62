#pragma once

#include "platform/base/FileCalls.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <vector>

/// What the folders below a folder held when they were last listed, kept in a file from one run to the next:
/// a folder that has not changed since needn't be opened and read again, which in a course of many nodes is
/// most of a run in which little has changed. Such a file may be lost or cut off: then all folders are
/// listed. Names and paths are native bytes, paths relative to the folder, with "/" between components.
class CKeptListings {
public:
    struct Listing {
        quint64 nInode = 0;
        /// Of the folder, in nanoseconds since 1970.
        qint64 nChanged = 0;
        /// In the order of their names. Of a kept listing the names last as long as the object.
        std::vector<Platform::CFolderEntry> Entries;
    };

    /// Reads the file for the folder, which is open and of that path. Nothing is kept with an empty file
    /// name, and of a volume that doesn't tell of every change of a folder.
    CKeptListings(const QString& strFile, const QByteArray& folder, const Platform::CFolder& open);

    /// Whether listings are kept at all.
    bool Keeps() const { return !m_strFile.isEmpty(); }
    /// What a folder below holds, when it still is as it was listed; else null. May be called by several
    /// threads at a time, but only once for each folder.
    const Listing* Find(const Platform::CFolder& open, const QByteArray& path);
    /// The lines to keep of a folder that was listed, by the state that it had before; empty for what can't
    /// be kept: a folder of another volume, or one that may change again within a step of the clock.
    QByteArray LinesOf(const QByteArray& path, const Platform::CFileState& before,
                       const Listing& listing) const;
    /// Writes the file anew, where lines of folders have come. What was not found again is left out.
    void Write(const std::vector<QByteArray>& lines) const;

private:
    struct Kept {
        Listing Folder;
        /// Of the file that was read.
        QByteArrayView Lines;
        bool bFound = false;
    };
    bool Read();

    QString m_strFile;
    QByteArray m_head;
    quint64 m_nDevice = 0;
    qint64 m_nBegin = 0;
    QByteArray m_bytes;
    QHash<QByteArrayView, Kept> m_kept;
};
